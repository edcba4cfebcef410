/// \file
/// Files of a test.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace hueline::test {

/// A folder that goes with the test: where TMPDIR says, else in /tmp.
class Folder {
public:
    Folder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "hueline-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no folder in " + name);
        }
        path = name;
    }
    Folder(Folder const&) = delete;
    Folder& operator=(Folder const&) = delete;
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    /// Makes a file, and returns its path.
    std::string file(std::string const& name, std::string_view contents) const
    {
        std::ofstream(path / name, std::ios::binary) << contents;
        return (path / name).string();
    }

    /// Makes a file of zeros that takes no room, with one byte 0xff at the place given.
    std::string sparse_file(std::string const& name, std::uintmax_t size, std::streamoff mark) const
    {
        std::string const made = file(name, "");
        std::filesystem::resize_file(made, size);
        std::fstream(made, std::ios::binary | std::ios::in | std::ios::out).seekp(mark).put('\xff');
        return made;
    }

    std::filesystem::path path;
};

} // namespace hueline::test
