/// \file
/// A locale of the C library with a time and white space that no country has, for a scope of a test.
/// No installed locale is needed: localedef(1) makes it from what stands here.
#pragma once

#include "support/folder.hpp"
#include "support/process.hpp"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

namespace hueline::test {

/// What the locale has of its own.
struct LocaleFacts {
    std::string time = "%H:%M:%S"; ///< What %X of strftime stands for.
    std::string space = {};        ///< Further bytes that are white space, as "<U00A0>;<U00A1>".
};

/// Makes the locale that of the process. Afterwards that is the default one.
///
/// Throws std::runtime_error if localedef makes no locale.
class MadeUpLocale {
public:
    explicit MadeUpLocale(LocaleFacts const& facts)
    {
        write_characters();
        write_source(facts);
        // The categories that are not in the source are empty. That is made all the same (-c), and the
        // exit status tells of it.
        auto const run =
            run_program(on_pipes, {"localedef", "-c", "-f", path("characters"), "-i", path("source"), folder.path});
        setenv("LOCPATH", folder.path.parent_path().c_str(), 1);
        if (std::setlocale(LC_ALL, folder.path.filename().c_str()) == nullptr) {
            undo();
            throw std::runtime_error("no locale: " + run.report + run.err);
        }
    }
    MadeUpLocale(MadeUpLocale const&) = delete;
    MadeUpLocale& operator=(MadeUpLocale const&) = delete;
    ~MadeUpLocale() { undo(); }

private:
    std::string path(char const* name) const { return folder.path / name; }

    // Each byte is the character of that number.
    void write_characters() const
    {
        std::ofstream file(path("characters"));
        file << "<code_set_name> BYTES\n<comment_char> %\n<escape_char> /\nCHARMAP\n";
        for (unsigned value = 0; value < 256; ++value) {
            char line[32];
            std::snprintf(line, sizeof line, "<U%04X> /x%02x\n", value, value);
            file << line;
        }
        file << "END CHARMAP\n";
    }

    void write_source(LocaleFacts const& facts) const
    {
        std::ofstream file(path("source"));
        file << "LC_CTYPE\nspace <U0009>;<U000A>;<U000B>;<U000C>;<U000D>;<U0020>" << (facts.space.empty() ? "" : ";")
             << facts.space << "\nEND LC_CTYPE\n"
             << "LC_TIME\nt_fmt \"" << facts.time << "\"\n"
             << R"(d_fmt "%d"
d_t_fmt "%d %H"
am_pm "a";"p"
abday "1";"2";"3";"4";"5";"6";"7"
day "1";"2";"3";"4";"5";"6";"7"
abmon "1";"2";"3";"4";"5";"6";"7";"8";"9";"10";"11";"12"
mon "1";"2";"3";"4";"5";"6";"7";"8";"9";"10";"11";"12"
END LC_TIME
)";
    }

    void undo() const
    {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
    }

    Folder folder; // its name is that of the locale
};

} // namespace hueline::test
