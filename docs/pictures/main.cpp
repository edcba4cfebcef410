// hueline-pictures: draws the pictures of docs/images/, and writes docs/gallery.md and docs/roles.md.
//
//     hueline-pictures          writes the files
//     hueline-pictures --check  compares the files with what it would write, and names those that differ
//
// The exit status is 0 if all went well, 1 if files differ or something failed, and 2 for a wrong command line.
#include "files.hpp"
#include "page.hpp"
#include "picture.hpp"
#include "recording.hpp"
#include "roles.hpp"

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace hueline::pictures {

namespace {

namespace fs = std::filesystem;

fs::path const docs = fs::path(SOURCES) / "docs";
fs::path const images = docs / "images";

// Tells our pictures from others in the folder.
std::string const signature = "<!-- Drawn by script/pictures. -->\n";

using Files = std::map<fs::path, std::string>;

Files make()
{
    std::vector<Recording> const recordings = record_all();
    Files files;
    for (Recording const& recording : recordings) {
        files[images / (recording.name + ".svg")] = signature + picture_of(recording);
    }
    // The pictures of the roles have the colours of xterm, which come first.
    std::vector<OwnColors> const terminals = own_colors(contents_of(SOURCES "/docs/terminals/palettes.tsv"));
    std::vector<Recording> const roles = record_roles();
    for (Recording const& recording : roles) {
        Recording on_ground = recording;
        on_ground.title += " on a dark ground";
        files[images / ("roles-" + recording.name + "-dark.svg")] =
            signature + picture_of(on_ground, on_dark(terminals.front().palette));
        on_ground.title = recording.title + " on a light ground";
        files[images / ("roles-" + recording.name + "-light.svg")] =
            signature + picture_of(on_ground, on_light(terminals.front().palette));
    }
    files[docs / "roles.md"] = roles_page(contents_of(SOURCES "/docs/pictures/roles.md.in"), roles, terminals);
    files[docs / "gallery.md"] = page(contents_of(SOURCES "/docs/pictures/gallery.md.in"), recordings);
    return files;
}

// Our pictures that are drawn no more.
std::vector<fs::path> leftovers(Files const& files)
{
    std::vector<fs::path> found;
    if (fs::exists(images)) {
        for (fs::directory_entry const& entry : fs::directory_iterator(images)) {
            bool const is_ours = entry.is_regular_file() && contents_of(entry.path()).starts_with(signature);
            if (is_ours && !files.contains(entry.path())) {
                found.push_back(entry.path());
            }
        }
    }
    return found;
}

int check(Files const& files)
{
    int status = EXIT_SUCCESS;
    auto const complain = [&](fs::path const& file, char const* what) {
        std::cerr << fs::relative(file, SOURCES).string() << ' ' << what << '\n';
        status = EXIT_FAILURE;
    };
    for (auto const& [file, contents] : files) {
        if (!fs::exists(file)) {
            complain(file, "is missing");
        } else if (contents_of(file) != contents) {
            complain(file, "is out of date");
        }
    }
    for (fs::path const& file : leftovers(files)) {
        complain(file, "is drawn no more");
    }
    if (status != EXIT_SUCCESS) {
        std::cerr << "Run script/pictures, and look at what has changed.\n";
    }
    return status;
}

void write(Files const& files)
{
    fs::create_directories(images);
    for (auto const& [file, contents] : files) {
        std::ofstream stream(file, std::ios_base::binary);
        stream << contents;
        if (!stream.flush()) {
            throw std::runtime_error("cannot write " + file.string());
        }
    }
    for (fs::path const& file : leftovers(files)) {
        fs::remove(file);
    }
}

} // namespace

} // namespace hueline::pictures

int main(int argc, char* argv[])
{
    using namespace hueline::pictures;
    bool const checks = argc == 2 && std::string_view(argv[1]) == "--check";
    if (argc != 1 && !checks) {
        std::cerr << "usage: hueline-pictures [--check]\n";
        return 2;
    }
    try {
        ::setenv("TZ", "UTC0", 1);
        Files const files = make();
        if (checks) {
            return check(files);
        }
        write(files);
        return EXIT_SUCCESS;
    } catch (std::exception const& e) {
        std::cerr << "hueline-pictures: " << e.what() << '\n';
        return EXIT_FAILURE;
    }
}
