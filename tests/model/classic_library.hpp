/// \file
/// The class-based interface as it follows programs of steps: every operation, in one table, and what can be seen
/// afterwards. The time is made up in the whole program, the library under test included: takes the place of
/// the system library's time.
#pragma once

#include "kestry/hueline_classic.hpp"

#include "model/host.hpp"
#include "model/operation.hpp"
#include "model/step.hpp"

#include "support/grouping.hpp"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <sys/time.h>
#include <time.h>

namespace hueline::test {

/// What time(2) returns while the library is at work; before and after, the time is right.
inline time_t made_up_time = 0;
inline bool is_time_made_up = false;

} // namespace hueline::test

extern "C" time_t time(time_t* also) noexcept
{
    timeval now = {};
    gettimeofday(&now, nullptr);
    time_t const result = hueline::test::is_time_made_up ? hueline::test::made_up_time : now.tv_sec;
    if (also != nullptr) {
        *also = result;
    }
    return result;
}

namespace hueline::test {

/// Makes the time zone one whose local time is so many minutes ahead. POSIX writes the opposite sign.
inline void set_time_zone(int minutes)
{
    char zone[64];
    std::snprintf(zone, sizeof zone, "<here>%c%02d:%02d", minutes > 0 ? '-' : '+', std::abs(minutes) / 60,
                  std::abs(minutes) % 60);
    setenv("TZ", zone, 1);
}

/// Starts at second 0 of 1970, in UTC.
class ClassicLibrary {
public:
    ClassicLibrary()
    {
        made_up_time = 0;
        set_time_zone(0);
    }
    ClassicLibrary(ClassicLibrary const&) = delete;
    ClassicLibrary& operator=(ClassicLibrary const&) = delete;

    /// Follows a step and says what is seen after it.
    Facts perform(Operation<ClassicLibrary> const& operation, Step const& step)
    {
        result = "";
        is_time_made_up = true;
        std::string const thrown = thrown_by([&] { operation.act(*this, step); });
        is_time_made_up = false;

        Facts facts;
        facts.push_back({"isUsingColor()", kestry::Hueline::isUsingColor() ? "true" : "false"});
        facts.push_back({"getNoFrillsMode()", kestry::Hueline::getNoFrillsMode() ? "true" : "false"});
        facts.push_back({"isLongDumps()", kestry::HexDump::isLongDumps() ? "true" : "false"});
        add_format(facts, "stream", os);
        facts.push_back({"written", os.str()});
        facts.push_back({"thrown", thrown});
        facts.push_back({"returned", result});
        os.str("");
        return facts;
    }

    /// The first object is always there.
    std::unique_ptr<kestry::Hueline>& object(int number)
    {
        if (objects.empty()) {
            objects.push_back(std::make_unique<kestry::Hueline>());
        }
        return objects[static_cast<std::size_t>(number) % objects.size()];
    }

    std::vector<std::unique_ptr<kestry::Hueline>> objects;
    std::ostringstream os;
    std::string result; ///< Of a function that returns a string.
};

template <std::string (*function)()>
void of_nothing(ClassicLibrary& l, Step const&)
{
    l.result = function();
}

template <std::string (*function)(std::string const&)>
void of_text(ClassicLibrary& l, Step const& step)
{
    l.result = function(step.texts[0]);
}

template <std::string (*function)(unsigned char)>
void of_byte(ClassicLibrary& l, Step const& step)
{
    l.result = function(static_cast<unsigned char>(step.numbers[0]));
}

template <class Number>
void dump_of_number(ClassicLibrary& l, Step const& step)
{
    l.objects.push_back(std::make_unique<kestry::HexDump>(static_cast<Number>(step.numbers[0])));
}

inline kestry::HexColor code_of(Step const& step) { return static_cast<kestry::HexColor>(step.numbers[0]); }

/// A copy of the whole object.
inline std::unique_ptr<kestry::Hueline> copy_of(kestry::Hueline const& object)
{
    if (auto const* const dump = dynamic_cast<kestry::HexDump const*>(&object)) {
        return std::make_unique<kestry::HexDump>(*dump);
    }
    return std::make_unique<kestry::Hueline>(object);
}

inline std::vector<Operation<ClassicLibrary>> make_classic_operations()
{
    using namespace kestry;
    using enum Argument;
    using Library = ClassicLibrary;
    // clang-format off
    std::vector<Operation<Library>> all = {
        {"Hueline()", 8, {}, [](Library& l, Step const&) { l.objects.push_back(std::make_unique<Hueline>()); }},
        {"copy", 5, {item}, [](Library& l, Step const& step) { l.objects.push_back(copy_of(*l.object(step.numbers[0]))); }},
        {"copy of the Hueline alone", 5, {item}, [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<Hueline>(*l.object(step.numbers[0]))); }},
        {"assign", 8, {item, item}, [](Library& l, Step const& step) { *l.object(step.numbers[1]) = *l.object(step.numbers[0]); }},
        {"destroy", 50, {item}, [](Library& l, Step const& step) {
            l.object(step.numbers[0]);
            l.objects.erase(l.objects.begin() + step.numbers[0] % static_cast<int>(l.objects.size()));
        }},
        {"flipColor", 20, {item}, [](Library& l, Step const& step) { l.object(step.numbers[0])->flipColor(); }},
        {"unflipColor", 16, {item}, [](Library& l, Step const& step) { l.object(step.numbers[0])->unflipColor(); }},
        {"useColor", 40, {item, mostly_on}, [](Library& l, Step const& step) { l.object(step.numbers[0])->useColor(step.numbers[1] != 0); }},
        {"<<", 24, {item}, [](Library& l, Step const& step) { l.os << *l.object(step.numbers[0]); }},
        {"setNoFrillsMode", 16, {mostly_off}, [](Library&, Step const& step) { Hueline::setNoFrillsMode(step.numbers[0] != 0); }},
        {"HexDump::_longDumps =", 6, {flag}, [](Library&, Step const& step) { HexDump::_longDumps = step.numbers[0] != 0; }},
        {"hide_cursor()", 4, {}, of_nothing<Hueline::hide_cursor>}, {"show_cursor()", 4, {}, of_nothing<Hueline::show_cursor>},
        {"the global locale groups", 3, {}, [](Library&, Step const&) { std::locale::global(grouping_locale()); }},
        {"the global locale is classic", 3, {}, [](Library&, Step const&) { std::locale::global(std::locale::classic()); }},

        {"color()", 8, {code}, [](Library& l, Step const& step) { l.result = Hueline::color(code_of(step)); }},
        {"bright_color()", 8, {code}, [](Library& l, Step const& step) { l.result = Hueline::bright_color(code_of(step)); }},
        {"color() of four", 6, {number, number, number, number}, [](Library& l, Step const& step) { l.result = Hueline::color(step.numbers[0], step.numbers[1], step.numbers[2], step.numbers[3]); }},
        {"color() of three", 6, {number, number, number}, [](Library& l, Step const& step) { l.result = Hueline::color(step.numbers[0], step.numbers[1], step.numbers[2]); }},
        {"color_bg()", 6, {number, number, number}, [](Library& l, Step const& step) { l.result = Hueline::color_bg(step.numbers[0], step.numbers[1], step.numbers[2]); }},
        {"color() of VGA", 16, {vga_colour}, [](Library& l, Step const& step) { l.result = Hueline::color(static_cast<HexColor_VGA>(step.numbers[0])); }},
        {"color() of a byte", 6, {code, byte}, [](Library& l, Step const& step) { l.result = Hueline::color(code_of(step), static_cast<unsigned char>(step.numbers[1])); }},
        {"bright_color() of a byte", 6, {code, byte}, [](Library& l, Step const& step) { l.result = Hueline::bright_color(code_of(step), static_cast<unsigned char>(step.numbers[1])); }},
        {"color() of a text", 6, {code, text}, [](Library& l, Step const& step) { l.result = Hueline::color(code_of(step), step.texts[0]); }},
        {"bright_color() of a text", 6, {code, text}, [](Library& l, Step const& step) { l.result = Hueline::bright_color(code_of(step), step.texts[0]); }},

        {"the time is", 8, {seconds}, [](Library&, Step const& step) { made_up_time = step.numbers[0]; }},
        {"the time zone is", 4, {minutes}, [](Library&, Step const& step) { set_time_zone(step.numbers[0]); }},
        {"time_stamp()", 4, {text}, of_text<Hueline::time_stamp>}, {"current_time()", 12, {}, of_nothing<Hueline::current_time>},

        {"ColorTheme::app_title()", 4, {text}, of_text<ColorTheme::app_title>}, {"ColorTheme::alert()", 4, {text}, of_text<ColorTheme::alert>},
        {"ColorTheme::info()", 4, {text}, of_text<ColorTheme::info>}, {"ColorTheme::default_text() of a text", 4, {text}, of_text<ColorTheme::default_text>},
        {"ColorTheme::default_text()", 4, {}, of_nothing<ColorTheme::default_text>},
        {"ColorTheme::defaultOperatingSystemText()", 4, {}, of_nothing<ColorTheme::defaultOperatingSystemText>},
        {"ColorTheme::seperator()", 4, {text}, of_text<ColorTheme::seperator>}, {"ColorTheme::help()", 4, {}, of_nothing<ColorTheme::help>},
        {"ColorTheme::help() of a text", 4, {text}, of_text<ColorTheme::help>}, {"ColorTheme::prompt()", 4, {text}, of_text<ColorTheme::prompt>},
        {"ColorTheme::version()", 4, {text}, of_text<ColorTheme::version>}, {"ColorTheme::cursor()", 4, {text}, of_text<ColorTheme::cursor>},
        {"ColorTheme::commandLine()", 4, {}, of_nothing<ColorTheme::commandLine>}, {"ColorTheme::commandLine() of a text", 4, {text}, of_text<ColorTheme::commandLine>},
        {"ColorTheme::path()", 4, {text}, of_text<ColorTheme::path>},
        {"ColorTheme::path() of a number", 4, {number}, [](Library& l, Step const& step) { l.result = ColorTheme::path(static_cast<unsigned>(step.numbers[0])); }},
        {"ColorTheme::name()", 4, {text}, of_text<ColorTheme::name>}, {"ColorTheme::status()", 4, {}, of_nothing<ColorTheme::status>},
        {"DataTheme::immediate_destination()", 4, {byte}, of_byte<DataTheme::immediate_destination>}, {"DataTheme::total_count()", 4, {byte}, of_byte<DataTheme::total_count>},
        {"DataTheme::request_title()", 4, {text}, of_text<DataTheme::request_title>}, {"DataTheme::response_title()", 4, {text}, of_text<DataTheme::response_title>},

        {"HexDump of a char", 4, {byte}, dump_of_number<char>}, {"HexDump of an unsigned char", 4, {byte}, dump_of_number<unsigned char>},
        {"HexDump of an unsigned short", 4, {two_bytes}, dump_of_number<unsigned short>},
        {"HexDump of an unsigned long", 4, {number, number}, [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(long_word_of(step))); }},
        {"HexDump of words", 4, {numbers}, [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(words_of(step))); }},
        {"HexDump of bytes", 6, {bytes}, [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(bytes_of(step))); }},
        {"HexDump of bytes, separated", 6, {bytes_and_separator}, [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(bytes_of(step), step.texts[1])); }},
        {"HexDump of a string", 6, {bytes}, [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(step.texts[0])); }},
        {"HexDump::raw_data_byte()", 4, {byte}, of_byte<HexDump::raw_data_byte>},
        {"HexDump::raw_data() of a short", 4, {two_bytes}, [](Library& l, Step const& step) { l.result = HexDump::raw_data(static_cast<unsigned short>(step.numbers[0])); }},
        {"HexDump::raw_data() of bytes", 4, {bytes}, [](Library& l, Step const& step) { l.result = HexDump::raw_data(bytes_of(step)); }},
        {"rtrim()", 8, {text_with_space}, of_text<rtrim>},
    };
    // clang-format on
    for (HostOperation const& host : host_operations()) {
        all.push_back({host.name, host.weight, host.arguments,
                       [](Library& l, Step const& step) { host_operation(step)->act(l.os, step); }});
    }
    return all;
}

inline std::vector<Operation<ClassicLibrary>> const& classic_operations()
{
    static std::vector<Operation<ClassicLibrary>> const all = make_classic_operations();
    return all;
}

} // namespace hueline::test
