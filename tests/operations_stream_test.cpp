// What each operation of the stream interface writes and changes, on every kind of stream: row by row as the table has it.

#include "kestry/hueline_stream.hpp"

#include "operations_stream.hpp"

#include "support/recorder.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

TEST(TableOfTheStreamInterface, GivesEachANumberAndANameOfItsOwn)
{
    std::set<int> numbers;
    std::set<std::string> names;
    for (StreamOperation const& each : stream_operations()) {
        EXPECT_TRUE(numbers.insert(each.number).second && names.insert(each.name).second) << each.name;
        EXPECT_LT(each.number, 200) << each.name << ": the standard library's operations are from there on";
    }
}

struct Place {
    std::string name;
    bool passes; // the gate
    Sinks sinks;
    std::ostream* os; // none: a string stream
    bool is_colorized = true;
    bool no_frills = false;
};

void PrintTo(Place const& place, std::ostream* os) { *os << place.name; }

std::ostringstream string_stream;
std::ostream same_buffer(std::cout.rdbuf());

Place const places[] = {
    {"Cout", true, on_terminals, &std::cout},
    {"CerrAlone", true, {Sink::pipe, Sink::terminal}, &std::cerr},
    {"Clog", true, {Sink::closed, Sink::terminal}, &std::clog},
    {"CoutInAPipe", false, {Sink::pipe, Sink::terminal}, &std::cout},
    {"CoutInAFile", false, {Sink::file, Sink::terminal}, &std::cout},
    {"CoutInAFullDevice", false, {Sink::full, Sink::terminal}, &std::cout},
    {"CoutClosed", false, {Sink::closed, Sink::terminal}, &std::cout},
    {"CoutNotColorized", false, on_terminals, &std::cout, false},
    {"CoutWithoutFrills", false, on_terminals, &std::cout, true, true},
    {"CerrNotColorized", false, on_terminals, &std::cerr, false},
    {"AString", false, on_terminals, &string_stream},
    {"AnotherStreamWithTheBufferOfCout", false, on_terminals, &same_buffer},
};

// As the table has it: a flush as \f.
std::string shown(std::string const& text)
{
    std::string all = readable(text);
    for (std::size_t at = 0; (at = all.find("\\x0c", at)) != std::string::npos;) {
        all.replace(at, 4, "\\f");
    }
    return all;
}

// What a stream on a terminal receives; none of it arrives there.
std::string received(std::ostream& os, void (*insert)(std::ostream& os))
{
    Recorder const recorder(os);
    insert(os);
    return shown(recorder.text());
}

void as_at_load(std::ostream& os) { os << colorize << reset << push; }

void everything_changed(std::ostream& os)
{
    os << thin << dark << italic << underline << blink << reverse << red << on_blue;
}

struct Effect {
    std::string bytes;
    std::string record;
};

// In a place where standard error is a terminal: the record is set and asked for there.
Effect effect_of(StreamOperation const& operation, Place const& place, bool after_changes)
{
    std::clog.flags(std::ios_base::dec | std::ios_base::skipws);
    received(std::clog, as_at_load);
    if (after_changes) {
        received(std::clog, everything_changed);
    }
    Effect effect;
    {
        std::ostream& os = *place.os;
        os.unsetf(std::ios_base::unitbuf);
        os.width(0);
        place.is_colorized ? colorize(os) : nocolorize(os);
        _setNoFrillsMode(place.no_frills);
        Recorder const recorder(os);
        StreamProgram program = {.os = &os, .returned = &os};
        operation.act(program, operation.step_of_example());
        effect.bytes = shown(recorder.text() + program.result);
        if (program.returned != &os) {
            report(operation.name + " returned another stream\n");
        }
        program.guards.clear();
        _setNoFrillsMode(false);
        os.width(0);
        os.fill(' ');
    }
    received(std::clog, [](std::ostream& os) { os << colorize; });
    effect.record = received(std::clog, [](std::ostream& os) { os << adjust; });
    return effect;
}

void expect_same(std::string const& what, std::string const& expected, std::string const& got)
{
    if (expected != got) {
        report(what + "\n    expected " + expected + "\n    got      " + got + '\n');
    }
}

// No text of the table says what mode is on.
std::string in_mode(Place const& place, std::string text)
{
    std::string const off = " no frills mode is off ";
    if (std::size_t const at = text.find(off); place.no_frills && at != std::string::npos) {
        text.replace(at, off.size(), " no frills mode is on ");
    }
    return text;
}

class OperationsOfTheStreamInterface : public testing::TestWithParam<Place> {};

TEST_P(OperationsOfTheStreamInterface, WriteAndChangeWhatTheirRowsSay)
{
    Place const& place = GetParam();
    auto const run = run_with(place.sinks, [&] {
        for (StreamOperation const& each : stream_operations()) {
            if (each.symbols.empty() || each.example.told_by_the_model) {
                continue;
            }
            Example const& row = each.example;
            std::string const bytes = in_mode(place, place.passes ? row.colored : row.plain);
            std::string const later = in_mode(place, place.passes ? row.colored_after_changes : row.plain);
            Records const& records = place.passes ? row.record_where_colored : row.record_where_plain;
            Effect const at_load = effect_of(each, place, false);
            expect_same(each.name, bytes, at_load.bytes);
            expect_same(each.name + ", adjust after it", records.at_load, at_load.record);
            Effect const after_changes = effect_of(each, place, true);
            expect_same(each.name + " after changes", later, after_changes.bytes);
            expect_same(each.name + " after changes, adjust after it", records.after_changes, after_changes.record);
        }
        report("through");
    });
    EXPECT_EQ(run.report, "through");
    EXPECT_EQ(run.status, 0);
}

INSTANTIATE_TEST_SUITE_P(, OperationsOfTheStreamInterface, testing::ValuesIn(places),
                         [](auto const& place) { return place.param.name; });

} // namespace
