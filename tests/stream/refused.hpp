/// \file
/// Streams that the gate refuses, one for each reason it has.
#pragma once

#include "kestry/hueline_stream.hpp"

#include "support/testing.hpp"

namespace hueline::test {

struct Refused {
    std::string why;
    bool at_terminal;      ///< Whether the gate has to find a terminal, and to refuse for another reason.
    std::string written;   ///< What reached the stream that was refused.
    std::string rendition; ///< What adjust writes at the end, on a stream that passes.
    std::string found;     ///< What insert reported, and then what the gate has found: "terminal" or "none".
};

inline void nothing(std::ostream&) {}

inline std::ostream& everything_changed(std::ostream& os)
{
    using namespace kestry::Hueline;
    return os << thin << dark << italic << underline << blink << reverse << red << on_blue;
}

/// What adjust writes after everything_changed, as readable() shows it.
inline constexpr char const* everything_changed_bytes = R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)";

/// For each reason to refuse, in a process of its own: runs insert on a stream that the gate refuses,
/// before and after on one that it lets pass.
inline std::vector<Refused> refused(std::function<void(std::ostream&)> const& before,
                                    std::function<void(std::ostream&)> const& insert,
                                    std::function<void(std::ostream&)> const& after = nothing)
{
    using namespace kestry::Hueline;

    struct Reason {
        char const* why;
        bool at_terminal;
        Sink out;
        std::function<void()> insert;
    };
    auto const into_cout = [&] { insert(std::cout << colorize); };
    auto const into_string = [&] {
        std::ostringstream os;
        insert(os << colorize);
        std::cout << os.str();
    };
    auto const into_sharing_stream = [&] {
        std::ostream os(std::cout.rdbuf());
        insert(os << colorize);
    };
    auto const without_frills = [&] {
        _setNoFrillsMode(true);
        insert(std::cout << colorize);
        _setNoFrillsMode(false);
    };
    Reason const reasons[] = {
        {"standard output is a pipe", false, Sink::pipe, into_cout},
        {"standard output is a file", false, Sink::file, into_cout},
        {"standard output is /dev/full", false, Sink::full, into_cout},
        {"standard output is closed", false, Sink::closed, into_cout},
        {"the stream is not colorized", true, Sink::terminal, [&] { insert(std::cout); }},
        {"no-frills mode is on", true, Sink::terminal, without_frills},
        {"it is a string stream", false, Sink::terminal, into_string},
        {"it is another stream with the buffer of std::cout", false, Sink::terminal, into_sharing_stream},
    };

    std::vector<Refused> results;
    for (Reason const& reason : reasons) {
        Outcome const run = run_with({.out = reason.out, .err = Sink::terminal}, [&] {
            before(std::cerr << colorize);
            reason.insert();
            report(_isUsingColor() ? "terminal" : "none");
            after(std::cerr);
            std::cerr << '|' << adjust;
        });
        results.push_back({.why = reason.why,
                           .at_terminal = reason.at_terminal,
                           .written = run.out,
                           .rendition = run.err.substr(run.err.rfind('|') + 1),
                           .found = run.report});
    }
    return results;
}

} // namespace hueline::test
