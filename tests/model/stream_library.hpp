/// \file
/// The stream interface as it follows programs of steps, and what can be seen afterwards.
#pragma once

#include "kestry/hueline_stream.hpp"

#include "model/host.hpp"
#include "model/step.hpp"

#include "operations_stream.hpp"

#include "support/isatty_calls.hpp"
#include "support/clock.hpp"

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace hueline::test {

/// Has the standard streams, a string stream and another stream with std::cout's buffer. Who derives from it gives
/// them buffers that remember what they receive.
class StreamLibrary {
public:
    /// out: where stdio's output goes, but in programs that have closed it.
    explicit StreamLibrary(std::FILE* out) { program.out = out; }
    StreamLibrary(StreamLibrary const&) = delete;
    StreamLibrary& operator=(StreamLibrary const&) = delete;
    virtual ~StreamLibrary() = default;

    /// Follows a step and says what is seen after it.
    Facts perform(StreamOperation const& operation, Step const& step)
    {
        program.os = &stream(step.on);
        program.returned = nullptr;
        program.result = "";
        isatty_calls = 0;
        clock_readings = 0;
        int constexpr mark = 4711;
        errno = mark;
        std::string const thrown = thrown_by([&] { operation.act(program, step); });
        bool const errno_kept = errno == mark;

        Facts facts;
        facts.push_back({"_isUsingColor()", kestry::Hueline::_isUsingColor() ? "true" : "false"});
        facts.push_back({"_getNoFrillsMode()", kestry::Hueline::_getNoFrillsMode() ? "true" : "false"});
        for (std::string const name : {"cout", "cerr", "clog", "text", "second"}) {
            add_format(facts, name, stream(name));
            facts.push_back({name + " colorize word", std::to_string(stream(name).iword(word))});
        }
        Received const received = take_received();
        facts.push_back({"received by std::cout's buffer", received.out});
        facts.push_back({"received by std::cerr's buffer", received.err});
        facts.push_back({"received by the string stream", received.text});
        facts.push_back({"thrown", thrown});
        facts.push_back({"returned", program.result});
        bool const is_its_stream = program.returned == nullptr || program.returned == program.os;
        facts.push_back({"returned stream", is_its_stream ? "its own" : "another"});
        facts.push_back({"isatty called", std::to_string(isatty_calls)});
        facts.push_back({"clock read", std::to_string(clock_readings)});
        facts.push_back({"errno", errno_kept ? "kept" : "changed"});
        return facts;
    }

    std::ostream& stream(std::string const& name)
    {
        if (name == "cerr") {
            return std::cerr;
        }
        if (name == "clog") {
            return std::clog;
        }
        if (name == "text") {
            return text;
        }
        return name == "second" ? second : std::cout;
    }

protected:
    /// What the buffers have received since the last call, with flushes.
    struct Received {
        std::string out;
        std::string err;
        std::string text;
    };
    virtual Received take_received() = 0;

    StreamProgram program;
    std::ostringstream text;
    std::ostream second{nullptr};

private:
    int const word = find_colorize_word();
};

/// Every operation, and the host's.
inline std::vector<StreamOperation> const& operations_of_a_program()
{
    static std::vector<StreamOperation> const all = with_host_operations<StreamProgram>(
        stream_operations(), [](StreamProgram& p, Step const& step) { host_operation(step)->act(*p.os, step); });
    return all;
}

} // namespace hueline::test
