#include "kestry/hueline_stream.hpp"

#include "console.hpp"
#include "dump.hpp"
#include "themes.hpp"
#include "tour.hpp"

#include <kestry/kit/policy.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <getopt.h>
#include <iostream>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

namespace {

using namespace kestry::Hueline;
namespace kit = kestry::kit;

int constexpr status_of_failure = 1;
int constexpr status_of_misuse = 2;

// ---------------------------------------------------------------------------------------------
// The demonstrations
// ---------------------------------------------------------------------------------------------

// What a demonstration leaves on a terminal.
enum class Leaves {
    gated,     // colours, but none in no-frills mode
    colors,    // colours in no-frills mode too: the indicators' cells carry theirs past the gate
    open_line, // as colors, and the cursor after the last frame
};

struct Demonstration {
    std::string_view name;
    std::ostream& (*show)(std::ostream&);
    Leaves leaves;
    char const* description;
};

std::ostream& templates(std::ostream& os)
{
    return os << crossplatform_template << platformspecific_template << colorized_crossplatform_template
              << colorized_platformspecific_template;
}

std::string_view constexpr dump_name = "dump"; // takes arguments, so it is no manipulator

// clang-format off
Demonstration const demonstrations[] = {
    {"tour",         tour,                           Leaves::gated,     "a part at a time, with the code that wrote it"},
    {"banner",       build_version,                  Leaves::colors,    "the version and most of the patterns"},
    {"templates",    templates,                      Leaves::gated,     "plain lines and lines in white on green"},
    {"codes",        test_pattern_supported_m_codes, Leaves::gated,     "the SGR codes 0 to 108, on a terminal only"},
    {"normal-reset", test_pattern_normal_reset,      Leaves::gated,     "what normal keeps and reset forgets"},
    {"matrix",       test_pattern_matrix,            Leaves::gated,     "eight colours on eight backgrounds"},
    {"palette",      test_pattern_256bit,            Leaves::gated,     "colours 0 to 15 of the palette on each other"},
    {"greyscale",    test_pattern_greyscale,         Leaves::gated,     "the 24 greys of the palette"},
    {"rgb",          test_pattern_rgb,               Leaves::gated,     "the colour cube of the palette"},
    {"status",       test_pattern_status_line,       Leaves::open_line, "a status line that fills, for four seconds"},
    {"progress",     test_pattern_progress_line,     Leaves::open_line, "a progress meter that climbs, for four seconds"},
    {"themes",       themes,                         Leaves::gated,     "both forms of the themes, role by role"},
    {dump_name,      nullptr,                        Leaves::gated,     "files in hexadecimal: takes all arguments after it"},
};
// clang-format on

Demonstration const& banner = demonstrations[1];

std::string all_names()
{
    std::string names;
    for (Demonstration const& known : demonstrations) {
        names += names.empty() ? "" : ", ";
        names += known.name;
    }
    return names;
}

// ---------------------------------------------------------------------------------------------
// The command line
// ---------------------------------------------------------------------------------------------

// A command line that cannot be followed; what() says why and what is possible.
struct Misuse : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class Task { demonstrate, help, version, list };

struct Request {
    Task task = Task::demonstrate;
    bool no_frills = false;
    kit::color_option color;
    std::vector<Demonstration const*> shows;
    std::vector<std::string> files; // for dump
    DumpForm form = DumpForm::bytes;
};

int constexpr color_value = 256; // no character: the option has no short form

// clang-format off
option const options[] = {
    {"help",      no_argument,       nullptr, 'h'},
    {"version",   no_argument,       nullptr, 'V'},
    {"list",      no_argument,       nullptr, 'l'},
    {"no-frills", no_argument,       nullptr, 'n'},
    {"color",     optional_argument, nullptr, color_value},
    {"canonical", no_argument,       nullptr, 'C'},
    {nullptr,     0,                 nullptr, 0},
};
// clang-format on

// What getopt_long(3) has just refused: an option that is unknown, or one that is known and was given
// an argument.
Misuse refused_option(char* const* argv)
{
    std::string const possible = ": the options are --help, --version, --list, --no-frills, --color and --canonical";
    for (option const* known = options; known->name != nullptr; ++known) {
        if (known->val == optopt) {
            return Misuse("option '--" + std::string(known->name) + "' takes no argument" + possible);
        }
    }
    std::string const given = optopt == 0 ? argv[optind - 1] : std::string{'-', static_cast<char>(optopt)};
    return Misuse("unknown option " + quoted(given) + possible);
}

Demonstration const& find(std::string_view name)
{
    for (Demonstration const& known : demonstrations) {
        if (known.name == name) {
            return known;
        }
    }
    throw Misuse("unknown demonstration " + quoted(name) + ": the names are " + all_names());
}

kit::color_option read_color(char const* when)
{
    std::string_view const word = when != nullptr ? when : "always";
    std::optional<kit::color_option> const known = kit::parse_color_option(word);
    if (!known) {
        throw Misuse("unknown WHEN " + quoted(word) +
                     " of option '--color': it is one of auto, always, never, 16, 256, 24bit");
    }
    return *known;
}

// The first option that asks for a text decides: what follows it is not looked at.
Request read_options(int argc, char* const* argv)
{
    Request request;
    opterr = 0; // its messages would not say what is possible
    for (;;) {
        switch (getopt_long(argc, argv, "hVlnC", options, nullptr)) {
        case -1:
            return request;
        case 'h':
            request.task = Task::help;
            return request;
        case 'V':
            request.task = Task::version;
            return request;
        case 'l':
            request.task = Task::list;
            return request;
        case 'n':
            request.no_frills = true;
            break;
        case 'C':
            request.form = DumpForm::canonical;
            break;
        case color_value:
            request.color = read_color(optarg);
            break;
        default:
            throw refused_option(argv);
        }
    }
}

Request read_command_line(int argc, char* const* argv)
{
    Request request = read_options(argc, argv);
    if (request.task != Task::demonstrate) {
        return request;
    }
    int next_argument = optind;
    while (next_argument < argc) {
        Demonstration const& found = find(argv[next_argument++]);
        request.shows.push_back(&found);
        if (found.name == dump_name) {
            request.files.assign(argv + next_argument, argv + argc);
            break;
        }
    }
    if (request.shows.empty()) {
        request.shows.push_back(&banner);
    }
    return request;
}

// ---------------------------------------------------------------------------------------------
// The tasks
// ---------------------------------------------------------------------------------------------

void write_help()
{
    std::cout <<
        R"(Usage: hueline-demo [OPTION]... [NAME]...
       hueline-demo [OPTION]... [NAME]... dump [FILE]...
Shows what libhueline writes: in colour on a terminal, as plain text elsewhere.

  -h, --help          show this text
  -V, --version       show the version
  -l, --list          show the names of the demonstrations
  -n, --no-frills     no-frills mode: no progress line, no cursor control, and
                      no colour but what the library writes in that mode too
      --color[=WHEN]  auto, the default, always or never; 16, 256 and 24bit are
                      as always; never is no-frills mode on a terminal
  -C, --canonical     dump as hexdump -C does: offsets, bytes and text

With auto, NO_COLOR, FORCE_COLOR, CLICOLOR_FORCE, CLICOLOR and TERM are asked,
and each of the two streams whether it is a terminal.

Each NAME is a demonstration; they are shown in the order given. Without a NAME
the banner is shown. Start with the tour: where a person is at the keys, any key
goes on, and q ends it.

dump writes each FILE in hexadecimal, sixteen bytes a line. All arguments after
it but options are files, and all after "--". Without a FILE, and for "-", it
reads standard input.

The exit status is 0 if all went well, 1 if something could not be read or
written, and 2 if an option or a NAME is unknown.
)";
}

void write_list()
{
    std::size_t constexpr column = 14;
    for (Demonstration const& known : demonstrations) {
        std::cout << known.name << std::string(column - known.name.size(), ' ') << known.description << '\n';
    }
}

// Leaves a terminal to the next demonstration, or to the shell, as it was before.
void tidy_up_after(Demonstration const& shown)
{
    if (shown.leaves == Leaves::gated) {
        std::cout << reset;
        return;
    }
    UseFrillsMode const frills;
    std::cout << colorize << reset; // past the policy, as the colours of its cells
    if (shown.leaves == Leaves::open_line && output_is_terminal()) {
        std::cout << '\n';
    }
}

// Makes sure that all text has been written, printf's too, or throws with the reason in errno.
void finish_output()
{
    std::cout.flush();
    if (std::ferror(stdout) != 0) {
        std::cout.setstate(std::ios_base::badbit);
    }
}

// The patterns colorize the stream that they are shown on, whatever it was told: on a terminal that shall have no colour,
// no-frills mode takes it. A pipe needs no such thing, and would have other words.
void use(kit::color_policy const& policy, bool no_frills)
{
    kit::use_in_streams(policy);
    _setNoFrillsMode(no_frills || (output_is_terminal() && !policy.out()));
}

int demonstrate(Request const& request)
{
    use(kit::color_policy(request.color), request.no_frills);
    bool all_read = true;
    for (Demonstration const* const shown : request.shows) {
        if (shown->name == dump_name) {
            all_read = dump_files(request.files, request.form);
        } else {
            std::cout << shown->show;
            tidy_up_after(*shown);
        }
        finish_output();
    }
    return all_read ? 0 : status_of_failure;
}

int run(Request const& request)
{
    switch (request.task) {
    case Task::demonstrate:
        return demonstrate(request);
    case Task::help:
        write_help();
        break;
    case Task::version:
        std::cout << build_version_short << '\n';
        break;
    case Task::list:
        write_list();
        break;
    }
    finish_output();
    return 0;
}

int run_command_line(int argc, char* const* argv)
{
    std::cout.exceptions(std::ios_base::badbit); // at once, while errno still has the reason
    std::cerr.tie(nullptr);                      // a message does not try the failed output again
    try {
        return run(read_command_line(argc, argv));
    } catch (Misuse const& misuse) {
        complain(misuse.what());
        return status_of_misuse;
    } catch (std::ios_base::failure const&) {
        int const reason = errno;
        complain(std::string("cannot write to standard output: ") + std::strerror(reason));
    } catch (std::bad_alloc const&) {
        complain("out of memory");
    }
    return status_of_failure;
}

} // namespace

} // namespace demo

int main(int argc, char* argv[])
{
    demo::prepare_for_signals();
    return demo::run_command_line(argc, argv);
}
