#include "model/comparison.hpp"

#include "support/readable.hpp"

#include <array>
#include <cstddef>
#include <cstdio>
#include <iostream>
#include <string_view>

#include <stdio_ext.h>
#include <unistd.h>

namespace hueline::test {

namespace {

// Follows the bytes of each step. No text of the tests holds it.
constexpr std::string_view end_of_step = "\x1c(end of step)\x1c";

// A process that ended early.
constexpr char ended[] = "process";

std::string quoted(std::string const& text) { return '"' + readable(text) + '"'; }

std::string joined(std::vector<std::string> const& parts, char const* between)
{
    std::string all;
    for (std::string const& part : parts) {
        all += (all.empty() ? "" : between) + part;
    }
    return all;
}

std::string flag_names(std::ios_base::fmtflags flags)
{
    struct Name {
        std::ios_base::fmtflags flag;
        char const* name;
    };
    std::vector<std::string> names;
    for (Name const& each : {Name{std::ios_base::dec, "dec"}, Name{std::ios_base::oct, "oct"},
                             Name{std::ios_base::hex, "hex"}, Name{std::ios_base::showbase, "showbase"},
                             Name{std::ios_base::showpos, "showpos"}, Name{std::ios_base::uppercase, "uppercase"},
                             Name{std::ios_base::left, "left"}, Name{std::ios_base::right, "right"},
                             Name{std::ios_base::internal, "internal"}, Name{std::ios_base::unitbuf, "unitbuf"},
                             Name{std::ios_base::skipws, "skipws"}, Name{std::ios_base::boolalpha, "boolalpha"}}) {
        if (flags & each.flag) {
            names.emplace_back(each.name);
        }
    }
    return joined(names, "|");
}

std::string state_names(std::ios_base::iostate state)
{
    std::vector<std::string> names;
    if (state & std::ios_base::badbit) {
        names.emplace_back("bad");
    }
    if (state & std::ios_base::failbit) {
        names.emplace_back("fail");
    }
    if (state & std::ios_base::eofbit) {
        names.emplace_back("eof");
    }
    return names.empty() ? "good" : joined(names, "|");
}

// The parts of a text that end in a mark; what follows the last mark is the last part.
std::vector<std::string> split(std::string_view text, std::string_view mark)
{
    std::vector<std::string> parts;
    std::size_t end = 0;
    while ((end = text.find(mark)) != std::string_view::npos) {
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(end + mark.size());
    }
    parts.emplace_back(text);
    return parts;
}

// One line: names and values, each followed by NUL.
std::string to_line(Facts const& facts)
{
    std::string line;
    for (Fact const& fact : facts) {
        line += readable(fact.name) + '\0' + readable(fact.value) + '\0';
    }
    return line + '\n';
}

Facts from_line(std::string const& line)
{
    Facts facts;
    std::vector<std::string> const parts = split(line, std::string_view("\0", 1));
    for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
        facts.push_back({parts[i], parts[i + 1]});
    }
    return facts;
}

// Brings the bytes of a step to the descriptor without a change of any stream's state. What the
// descriptor does not take is forgotten: the next step starts with an empty buffer.
void end_step(std::FILE* file, int descriptor)
{
    std::fflush(file);
    __fpurge(file);
    std::clearerr(file);
    if (write(descriptor, end_of_step.data(), end_of_step.size()) < 0) {
        // a closed or full descriptor: nothing is compared there
    }
}

void follow(std::vector<Step> const& steps, Subject& subject)
{
    std::FILE* const out = stdout; // a step may put another pointer there
    std::FILE* const err = stderr;
    for (Step const& step : steps) {
        Facts const facts = subject.perform(step);
        end_step(out, STDOUT_FILENO);
        end_step(err, STDERR_FILENO);
        report(to_line(facts));
    }
    stdout = out;
    stderr = err;
}

std::string name_of(Sink sink)
{
    return std::array{"a terminal", "a pipe", "a file", "/dev/full", "closed"}.at(static_cast<std::size_t>(sink));
}

std::string value_of(Facts const& facts, std::string const& name)
{
    for (Fact const& fact : facts) {
        if (fact.name == name) {
            return fact.value;
        }
    }
    return "(not seen)";
}

void compare(std::string& text, std::string const& name, std::string const& expected, std::string const& got)
{
    if (expected != got && expected != any_value) {
        text += "  " + name + "\n    expected " + expected + "\n    got      " + got + '\n';
    }
}

std::string difference_of_step(Seen const& expected, Seen const& got)
{
    std::string text;
    compare(text, "bytes on standard output", quoted(expected.out), quoted(got.out));
    compare(text, "bytes on standard error", quoted(expected.err), quoted(got.err));
    for (Fact const& fact : expected.facts) {
        compare(text, fact.name, readable(fact.value), value_of(got.facts, fact.name));
    }
    return text;
}

} // namespace

std::string to_text(Step const& step)
{
    std::vector<std::string> arguments;
    for (int const number : step.numbers) {
        arguments.push_back(std::to_string(number));
    }
    for (std::string const& text : step.texts) {
        bool const is_long = text.size() > 200;
        arguments.push_back(is_long ? quoted(text.substr(0, 200)) + "... (" + std::to_string(text.size()) + " bytes)"
                                    : quoted(text));
    }
    return (step.on.empty() ? "" : step.on + ": ") + step.operation +
           (arguments.empty() ? "" : '{' + joined(arguments, ", ") + '}');
}

std::ostream& operator<<(std::ostream& os, Step const& step) { return os << to_text(step); }

std::ostream& operator<<(std::ostream& os, Sinks sinks)
{
    return os << "standard output " << name_of(sinks.out) << ", standard error " << name_of(sinks.err);
}

void add_format(Facts& facts, std::string const& name, std::ostream& os)
{
    facts.push_back({name + " fill", std::string(1, os.fill())});
    facts.push_back({name + " width", std::to_string(os.width())});
    facts.push_back({name + " precision", std::to_string(os.precision())});
    facts.push_back({name + " flags", flag_names(os.flags())});
    facts.push_back({name + " state", state_names(os.rdstate())});
}

std::vector<Seen> in_a_child(Sinks sinks, std::vector<Step> const& steps,
                             std::function<std::unique_ptr<Subject>()> const& make)
{
    Outcome const run = run_with(sinks, [&] {
        std::unique_ptr<Subject> const subject = make();
        follow(steps, *subject);
    });
    std::vector<std::string> const out = split(run.out, end_of_step);
    std::vector<std::string> const err = split(run.err, end_of_step);
    std::vector<std::string> const lines = split(run.report, "\n");
    std::vector<Seen> seen;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        seen.push_back({i < out.size() ? out[i] : "", i < err.size() ? err[i] : "", from_line(lines[i])});
    }
    if (run.status != 0) {
        std::string const how =
            run.signal != 0 ? "signal " + std::to_string(run.signal) : "exit status " + std::to_string(run.status);
        seen.push_back({out.back(), err.back(), {{ended, "ended by " + how + ": " + lines.back()}}});
    }
    return seen;
}

std::string difference(Sinks sinks, std::vector<Step> const& steps, std::vector<Seen> const& expected,
                       std::vector<Seen> const& got)
{
    for (std::size_t i = 0; i < steps.size(); ++i) {
        std::string text;
        if (i >= got.size()) {
            text = "  this step was not reached\n";
        } else {
            text = difference_of_step(expected[i], got[i]);
            compare(text, ended, "(not seen)", value_of(got[i].facts, ended));
        }
        if (!text.empty()) {
            std::string story =
                "with standard output " + name_of(sinks.out) + " and standard error " + name_of(sinks.err) + ":\n";
            for (std::size_t k = 0; k <= i; ++k) {
                story += "  " + std::to_string(k + 1) + ". " + to_text(steps[k]) + '\n';
            }
            return story + "step " + std::to_string(i + 1) + " differs in\n" + text;
        }
    }
    return got.size() > steps.size() ? "the process did not end well: " + value_of(got.back().facts, ended) : "";
}

} // namespace hueline::test
