// Streams that are in a failed state, have no buffer or one that fails somewhere, throw, or lack what
// their locale should have: what was accepted stays, records and formats change as they always do, and
// the next insertion works.

#include "kestry/hueline_stream.hpp"

#include "support/buffers.hpp"
#include "failing_facets.hpp"

#include "operations_stream.hpp"

#include "support/clock.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

struct Fault {
    std::size_t bytes = SmallBuffer::largest; // that the buffer takes
    AtEnd at_end = AtEnd::refuses;
    bool no_buffer = false;
    std::ios_base::iostate state = std::ios_base::goodbit; // that the stream is in already
    std::ios_base::iostate exceptions = std::ios_base::goodbit;
    std::locale locale = std::locale::classic();
    std::streamsize width = 0;
};

struct Result {
    std::string bytes;
    std::string thrown; // the name of the exception that left the operation
    std::ios_base::iostate state = std::ios_base::goodbit;
    std::ios_base::fmtflags flags = {};
    char fill = ' ';
    std::streamsize width = 0;
    bool using_color = false;
    std::string record; // the record and the saved one, as renditions on a stream without faults
};

// The two records, and formats of the stream, that an operation starts from.
enum class Start { as_at_load, everything_set };
Start const every_start[] = {Start::as_at_load, Start::everything_set};

void start_anew(Start start)
{
    std::cout.imbue(std::locale::classic());
    std::cout.flags(start == Start::as_at_load ? std::ios_base::dec | std::ios_base::skipws
                                               : std::ios_base::hex | std::ios_base::showbase);
    std::cout.fill(' ');
    std::cout.width(0);
    SmallBuffer unseen;
    WithBuffer const aside(std::cout, &unseen);
    std::cout << colorize << reset << push;
    if (start == Start::everything_set) {
        std::cout << thin << dark << italic << underline << blink << kestry::Hueline::reverse << cyan << on_blue;
    }
}

std::string records()
{
    SmallBuffer collected;
    WithBuffer const aside(std::cout, &collected);
    std::cout.width(0);
    std::cout << adjust << '|' << pull << adjust;
    return collected.text();
}

std::string thrown_by(std::function<void()> const& act)
{
    try {
        act();
        return "";
    } catch (BufferFault const&) {
        return "BufferFault";
    } catch (std::ios_base::failure const&) {
        return "std::ios_base::failure";
    } catch (std::bad_cast const&) {
        return "std::bad_cast";
    }
}

Result perform(StreamOperation const& tested, Start start, Fault const& fault = {})
{
    start_anew(start);
    Result result;
    {
        SmallBuffer buffer(fault.bytes, fault.at_end);
        WithBuffer const faulty(std::cout, fault.no_buffer ? nullptr : &buffer);
        std::cout.imbue(fault.locale);
        std::cout.width(fault.width);
        std::cout.setstate(fault.state);
        if (!fault.no_buffer) {
            std::cout.exceptions(fault.exceptions);
        }
        result.thrown = thrown_by([&] { apply_example(tested, std::cout); });
        result.bytes = buffer.text();
        result.state = std::cout.rdstate();
        result.flags = std::cout.flags();
        result.fill = std::cout.fill();
        result.width = std::cout.width();
        result.using_color = _isUsingColor();
    }
    std::cout.imbue(std::locale::classic());
    result.record = records();
    return result;
}

// How far the spinners have turned does not matter.
std::string without_frames(std::string bytes)
{
    std::replace_if(
        bytes.begin(), bytes.end(), [](char c) { return c == '/' || c == '-' || c == '\\'; }, '|');
    return bytes;
}

bool starts(std::string const& whole, std::string const& beginning)
{
    return without_frames(whole).find(without_frames(beginning)) == 0;
}

// Collects what is not as it should be; nothing may be.
class Findings {
public:
    explicit Findings(std::string of_what) : subject(std::move(of_what)) {}

    void expect(bool holds, std::string const& what)
    {
        if (!holds) {
            report(subject + ": " + what + '\n');
        }
    }

    // What the operation leaves to the next one is what it leaves on a stream without a fault.
    void expect_same_effects(Result const& result, Result const& without_fault)
    {
        expect(result.record == without_fault.record, "the record is " + readable(result.record));
        expect(result.flags == without_fault.flags, "the format is another one");
        expect(result.fill == without_fault.fill, "the fill is another one");
        expect(result.using_color == without_fault.using_color, "the gate found another answer");
    }

private:
    std::string subject;
};

// In a child whose standard streams are terminals: the operations in turn, each from both starts, with what it gives
// without a fault.
void expect_of_each(std::function<void(Findings&, StreamOperation const&, Start, Result const&)> const& test)
{
    auto const run = on_terminal([&] {
        let_waits_end_at_once();
        for (StreamOperation const& each : operations_on_a_stream()) {
            for (Start const start : every_start) {
                Findings found(each.name);
                test(found, each, start, perform(each, start));
            }
        }
        report("through");
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.report, "through");
}

TEST(FailedStream, IsNotWrittenToAndEverythingElseIsAsOnAGoodOne)
{
    expect_of_each([](Findings& found, StreamOperation const& each, Start start, Result const& without_fault) {
        for (auto const state : {std::ios_base::failbit, std::ios_base::badbit, std::ios_base::eofbit}) {
            Result const result = perform(each, start, {.state = state});
            found.expect(result.bytes.empty(), "wrote " + readable(result.bytes));
            found.expect((result.state & state) == state, "the state is forgotten");
            found.expect(result.thrown.empty(), "threw " + result.thrown);
            found.expect_same_effects(result, without_fault);
        }
    });
}

TEST(FailedStream, KeepsItsPendingWidth)
{
    expect_of_each([](Findings& found, StreamOperation const& each, Start start, Result const&) {
        Result const result = perform(each, start, {.state = std::ios_base::failbit, .width = 7});
        found.expect(result.width == (each.name == "myfillandw" ? 6 : 7),
                     "the width is " + std::to_string(result.width));
    });
}

TEST(NullBuffer, TakesNothingAndEverythingElseIsAsWithABuffer)
{
    expect_of_each([](Findings& found, StreamOperation const& each, Start start, Result const& without_fault) {
        Result const result = perform(each, start, {.no_buffer = true});
        found.expect((result.state & std::ios_base::badbit) != 0, "the stream is not bad");
        found.expect(result.thrown.empty(), "threw " + result.thrown);
        found.expect_same_effects(result, without_fault);
    });
}

// All numbers of bytes up to one more than the operation writes, or those that a pattern is cut at.
std::vector<std::size_t> cuts(std::size_t all)
{
    std::size_t const step = std::max<std::size_t>(all / 1000 * 100, 1);
    std::vector<std::size_t> cuts;
    for (std::size_t bytes = 0; bytes <= all; bytes += step) {
        cuts.push_back(bytes);
    }
    cuts.push_back(all);
    cuts.push_back(all + 1);
    return cuts;
}

// The buffer refuses what it does not take, or throws: each is tried from one of the two records.
AtEnd at_end_from(Start start) { return start == Start::everything_set ? AtEnd::throws : AtEnd::refuses; }

TEST(BufferOfSoManyBytes, TakesThemAndEverythingElseIsAsUsual)
{
    expect_of_each([](Findings&, StreamOperation const& each, Start start, Result const& without_fault) {
        std::size_t const all = without_fault.bytes.size();
        for (std::size_t const bytes : cuts(all)) {
            Findings found(each.name + " with " + std::to_string(bytes) + " bytes");
            Result const result = perform(each, start, {.bytes = bytes, .at_end = at_end_from(start)});
            found.expect(result.bytes.size() == std::min(bytes, all) && starts(without_fault.bytes, result.bytes),
                         "wrote " + readable(result.bytes));
            found.expect(((result.state & std::ios_base::badbit) != 0) == (bytes < all), "the state is wrong");
            found.expect(result.thrown.empty(), "threw " + result.thrown);
            found.expect_same_effects(result, without_fault);
        }
    });
}

// A buffer that takes everything and cannot be flushed.
class Unflushable : public std::stringbuf {
    int sync() override { throw BufferFault{}; }
};

TEST(UnflushableBuffer, EndsAReportAtItsFirstLine)
{
    auto const run = on_terminal([] {
        Unflushable buffer;
        std::ostream os(&buffer);
        os << color_mode_state << frills_mode_state;
        report(buffer.str() + (os.bad() ? "bad" : "good"));
    });
    EXPECT_EQ(run.report, " use color mode is off \nbad");
}

// What stands before the byte that throws has been written and done.
TEST(ThrowingStream, ThrowsOutOfEveryOperationAtAnyByte)
{
    expect_of_each([](Findings&, StreamOperation const& each, Start start, Result const& without_fault) {
        std::size_t const all = without_fault.bytes.size();
        std::string const thrown = at_end_from(start) == AtEnd::throws ? "BufferFault" : "std::ios_base::failure";
        for (std::size_t const bytes : cuts(all)) {
            Findings found(each.name + " with " + std::to_string(bytes) + " bytes");
            Result const result = perform(
                each, start, {.bytes = bytes, .at_end = at_end_from(start), .exceptions = std::ios_base::badbit});
            found.expect(result.thrown == (bytes < all ? thrown : ""), "threw '" + result.thrown + "'");
            found.expect(result.bytes.size() == std::min(bytes, all) && starts(without_fault.bytes, result.bytes),
                         "wrote " + readable(result.bytes));
            if (!each.example.in_steps) {
                found.expect(result.record == without_fault.record, "the record is " + readable(result.record));
            }
        }
    });
}

TEST(ThrowingStream, HasInItsRecordWhatCameBeforeTheByteThatThrew)
{
    auto const clear = [](std::ostream& os) { os << reset; };
    auto const warn = [](std::ostream& os) { os << thin << ColorTheme::alert("text"); };
    struct {
        void (*act)(std::ostream&);
        std::size_t bytes; // before the one that throws
        char const* record;
    } const rows[] = {
        {clear, 0, R"(BufferFault \e[00m\e[1m\e[44m)"},
        {clear, 9, R"(BufferFault \e[00m\e[1m\e[44m)"},
        {clear, 10, R"( \e[00m\e[1m)"},                            // all of them
        {warn, 9, R"(BufferFault \e[00m\e[44m)"},                  // in thin
        {warn, 10, R"(BufferFault \e[00m\e[31m\e[44m)"},           // in red
        {warn, 25, R"(BufferFault \e[00m\e[1m\e[31m\e[44m)"},      // in bold
        {warn, 47, R"(BufferFault \e[00m\e[1m\e[31m\e[44m)"},      // in the text
        {warn, 48, R"(BufferFault \e[00m\e[1m\e[2m\e[31m\e[44m)"}, // in dark
        {[](std::ostream& os) { os << build_version; }, 0, R"(BufferFault \e[00m\e[1m\e[44m)"},
        {[](std::ostream& os) { os << colorized_crossplatform_template; }, 0, R"(BufferFault \e[00m\e[1m\e[37m\e[44m)"},
        {[](std::ostream& os) { os << colorized_platformspecific_template; }, 0,
         R"(BufferFault \e[00m\e[1m\e[37m\e[44m)"}};
    for (auto const& row : rows) {
        auto const run = on_terminal([&] {
            std::cout << colorize << on_blue;
            SmallBuffer buffer(row.bytes, AtEnd::throws);
            {
                WithBuffer const failing(std::cout, &buffer);
                std::cout.exceptions(std::ios_base::badbit);
                report(thrown_by([&] { row.act(std::cout); }) + ' ');
            }
            std::string const both = records();
            report(readable(both.substr(0, both.find('|'))));
        });
        EXPECT_EQ(run.report, row.record) << "row " << &row - rows;
    }
}

TEST(FailingFacet, OfNumbersMakesAStreamBadThatIsGivenOneAndThrowsIfItIsToThrow)
{
    expect_of_each([](Findings& found, StreamOperation const& each, Start start, Result const& without_fault) {
        std::locale const no_numbers(std::locale::classic(), new NoNumbers);
        bool const fails = needs_numbers(each.example.needs_where_colored);
        Result const result = perform(each, start, {.locale = no_numbers});
        found.expect(((result.state & std::ios_base::badbit) != 0) == fails, "the state is wrong");
        found.expect(result.bytes.size() < without_fault.bytes.size() || !fails, "everything was written");
        found.expect(starts(without_fault.bytes, result.bytes), "wrote " + readable(result.bytes));
        found.expect(result.thrown.empty(), "threw " + result.thrown);
        found.expect_same_effects(result, without_fault);

        Result const thrown = perform(each, start, {.exceptions = std::ios_base::badbit, .locale = no_numbers});
        found.expect(thrown.thrown == (fails ? "std::bad_cast" : ""), "threw '" + thrown.thrown + "' if it was to");
        found.expect(starts(without_fault.bytes, thrown.bytes), "wrote " + readable(thrown.bytes));
    });
}

// std::endl fails before it writes, whatever the state of the stream; the digits of a number are widened too.
TEST(FailingFacet, OfCharactersMakesALineEndABadCastAndTheStreamOfANumberBad)
{
    expect_of_each([](Findings& found, StreamOperation const& each, Start start, Result const& without_fault) {
        Result const result = perform(each, start, {.locale = std::locale(std::locale::classic(), new NoWidening)});
        bool const throws = needs_line_ends(each.example.needs_where_colored);
        bool const fails = needs_numbers(each.example.needs_where_colored);
        found.expect(result.thrown == (throws ? "std::bad_cast" : ""), "threw " + result.thrown);
        found.expect(throws || ((result.state & std::ios_base::badbit) != 0) == fails, "the state is wrong");
        found.expect(throws || fails ? starts(without_fault.bytes, result.bytes)
                                     : without_frames(without_fault.bytes) == without_frames(result.bytes),
                     "wrote " + readable(result.bytes));
        if (!throws) {
            found.expect_same_effects(result, without_fault);
        }
    });
}

struct Ending {
    std::string bytes;
    std::string thrown;
    bool bad;
};

Ending without_facets(std::function<void(std::ostream&)> const& act,
                      std::ios_base::iostate exceptions = std::ios_base::goodbit)
{
    std::stringbuf buffer;
    WithoutFacets os(&buffer);
    os.exceptions(exceptions);
    std::string const thrown = thrown_by([&] { act(os); });
    return {buffer.str(), thrown, os.bad()};
}

// Up to libstdc++ 14, a stream that has no fill yet widens a blank before it takes another.
bool first_fill_throws()
{
    return !without_facets([](std::ostream& os) { os.fill('*'); }).thrown.empty();
}

TEST(WithoutFacets, EveryOperationFailsAsItsInsertionsDo)
{
    auto const run = on_terminal([] {
        for (StreamOperation const& each : operations_on_a_stream()) {
            auto const act = [&](std::ostream& os) { apply_example(each, os); };
            std::ostringstream usual;
            act(usual);
            Ending const ending = without_facets(act);
            bool const throws =
                needs_line_ends(each.example.needs_where_plain) && (each.name != "myfillandw" || first_fill_throws());
            bool const fails = needs_numbers(each.example.needs_where_plain);
            Findings found(each.name);
            found.expect(ending.thrown == (throws ? "std::bad_cast" : ""), "threw " + ending.thrown);
            found.expect(throws || ending.bad == fails, "the state is wrong");
            found.expect(throws || fails ? starts(usual.str(), ending.bytes)
                                         : without_frames(usual.str()) == without_frames(ending.bytes),
                         "wrote " + readable(ending.bytes));
            std::string const thrown = without_facets(act, std::ios_base::badbit).thrown;
            found.expect(thrown == (throws || fails ? "std::bad_cast" : ""), "threw " + thrown + " if it was to");
        }
        report(_isUsingColor() || _getNoFrillsMode() ? "changed" : "through");
    });
    EXPECT_EQ(run.report, "through");
    EXPECT_EQ(run.status, 0);
}

} // namespace
