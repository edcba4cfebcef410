#include "model/classic_model.hpp"

#include "model/digits.hpp"
#include "model/host.hpp"

#include <array>
#include <cstdio>
#include <functional>
#include <map>

namespace hueline::test {

namespace {

struct UnknownCode : std::exception {
    char const* what() const noexcept override { return "UnknownCodeException passed to Hueline"; }
};

bool is_space(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\v' || byte == '\f' || byte == '\r';
}

std::string trimmed(std::string text)
{
    while (!text.empty() && is_space(text.back())) {
        text.pop_back();
    }
    return text;
}

bool is_leap(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int days_of(int month, int year)
{
    std::array const days = {31, is_leap(year) ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return days.at(static_cast<std::size_t>(month - 1));
}

// A day at a time.
std::string stamp(long long seconds)
{
    int year = 1970;
    int month = 1;
    int day = 1;
    while (seconds < 0) {
        seconds += 24 * 60 * 60;
        if (--day == 0) {
            if (--month == 0) {
                --year;
                month = 12;
            }
            day = days_of(month, year);
        }
    }
    while (seconds >= 24 * 60 * 60) {
        seconds -= 24 * 60 * 60;
        if (++day > days_of(month, year)) {
            day = 1;
            if (++month > 12) {
                month = 1;
                ++year;
            }
        }
    }
    char text[80];
    std::snprintf(text, sizeof text, "[%04d-%02d-%02d.%02d:%02d:%02d]", year, month, day,
                  static_cast<int>(seconds / 3600), static_cast<int>(seconds / 60 % 60),
                  static_cast<int>(seconds % 60));
    return text;
}

} // namespace

Seen ClassicModel::perform(Step const& step)
{
    result = "";
    std::string const thrown = thrown_by([&] { act(step); });

    Facts facts;
    facts.push_back({"isUsingColor()", is_using_color() ? "true" : "false"});
    facts.push_back({"getNoFrillsMode()", no_frills ? "true" : "false"});
    facts.push_back({"isLongDumps()", long_dumps ? "true" : "false"});
    add_format(facts, "stream", os);
    facts.push_back({"written", os.str()});
    facts.push_back({"thrown", thrown});
    facts.push_back({"returned", result});
    os.str("");
    return {"", "", facts};
}

// One line for each operation: what it does.
struct ClassicModel::Operations {
    using Action = std::function<void(ClassicModel&, Step const&)>;
    using M = ClassicModel;

    // clang-format off
    inline static std::map<std::string, Action> const all = {
        // Objects and switches
        {"Hueline()",                      [](M& m, Step const&) { m.add_object(false, ""); }},
        {"copy",                           [](M& m, Step const& step) { ModelObject const copied = m.object(step); m.objects.push_back(copied); }},
        {"copy of the Hueline alone",      [](M& m, Step const& step) { ModelObject copied = m.object(step); copied.is_dump = false; m.objects.push_back(copied); }},
        {"assign",                         [](M& m, Step const& step) {
            ModelObject& to = m.object({"", "", {step.numbers.at(1)}});
            bool const is_dump = to.is_dump;
            to = m.object(step);
            to.is_dump = is_dump;
        }},
        {"destroy",                        [](M& m, Step const& step) { m.destroy_object(step); }},
        {"flipColor",                      [](M& m, Step const& step) { m.flip(m.object(step)); }},
        {"unflipColor",                    [](M& m, Step const& step) { m.unflip(m.object(step)); }},
        {"useColor",                       [](M& m, Step const& step) { m.object(step); m.use_color = step.numbers.at(1) != 0; }},
        {"<<",                             [](M& m, Step const& step) { m.os << m.object(step).text; }},
        {"setNoFrillsMode",                [](M& m, Step const& step) { m.no_frills = step.numbers.at(0) != 0; }},
        {"HexDump::_longDumps =",          [](M& m, Step const& step) { m.long_dumps = step.numbers.at(0) != 0; }},
        {"Hueline::hide_cursor()",         [](M& m, Step const&) { m.result = m.is_using_color() ? "\x1b[?25l" : ""; }},
        {"Hueline::show_cursor()",         [](M& m, Step const&) { m.result = m.is_using_color() ? "\x1b[?25h" : ""; }},
        {"the global locale groups",       [](M&, Step const&) {}},
        {"the global locale is classic",   [](M&, Step const&) {}},

        // Codes
        {"color()",                        [](M& m, Step const& step) { m.result = m.sequence(step.numbers.at(0)); }},
        {"bright_color()",                 [](M& m, Step const& step) { m.result = m.sequence(step.numbers.at(0) + 60LL); }},
        {"color() of four",                [](M& m, Step const& step) { m.result = m.true_color(step.numbers.at(0), step.numbers.at(1), step.numbers.at(2), step.numbers.at(3)); }},
        {"color() of three",               [](M& m, Step const& step) { m.result = m.true_color(38, step.numbers.at(0), step.numbers.at(1), step.numbers.at(2)); }},
        {"color_bg()",                     [](M& m, Step const& step) { m.result = m.true_color(48, step.numbers.at(0), step.numbers.at(1), step.numbers.at(2)); }},
        {"color() of VGA",                 [](M& m, Step const& step) { m.result = m.vga(step.numbers.at(0)); }},
        {"color() of a byte",              [](M& m, Step const& step) { m.result = m.colored(step.numbers.at(0), byte_digits(step.numbers.at(1))); }},
        {"bright_color() of a byte",       [](M& m, Step const& step) { m.result = m.bright(step.numbers.at(0), byte_digits(step.numbers.at(1))); }},
        {"color() of a text",              [](M& m, Step const& step) { m.result = m.colored(step.numbers.at(0), step.texts.at(0)); }},
        {"bright_color() of a text",       [](M& m, Step const& step) { m.result = m.bright(step.numbers.at(0), step.texts.at(0)); }},

        // Time
        {"the time is",                    [](M& m, Step const& step) { m.clock = step.numbers.at(0); }},
        {"the time zone is",               [](M& m, Step const& step) { m.zone = step.numbers.at(0); }},
        {"Hueline::time_stamp()",          [](M& m, Step const& step) { m.result = m.colored(36, step.texts.at(0)); }},
        {"current_time()",                 [](M& m, Step const&) { m.result = m.colored(36, m.now()); }},

        // Themes
        {"ColorTheme::app_title()",        [](M& m, Step const& step) { m.result = m.colored(32, step.texts.at(0)); }},
        {"ColorTheme::alert()",            [](M& m, Step const& step) { m.result = m.bright(31, step.texts.at(0)); }},
        {"ColorTheme::info()",             [](M& m, Step const& step) { m.result = m.colored(33, step.texts.at(0)); }},
        {"ColorTheme::default_text() of a text", [](M& m, Step const& step) { m.result = m.colored(36, step.texts.at(0)); }},
        {"ColorTheme::default_text()",     [](M& m, Step const&) { m.result = m.sequence(32); }},
        {"ColorTheme::defaultOperatingSystemText()", [](M& m, Step const&) { m.result = m.sequence(0); }},
        {"ColorTheme::seperator()",        [](M& m, Step const& step) { m.result = m.colored(37, step.texts.at(0)); }},
        {"ColorTheme::help()",             [](M& m, Step const&) { m.result = m.sequence(33); }},
        {"ColorTheme::help() of a text",   [](M& m, Step const& step) { m.result = m.colored(34, step.texts.at(0)); }},
        {"ColorTheme::prompt()",           [](M& m, Step const& step) { m.result = m.colored(35, step.texts.at(0)); }},
        {"ColorTheme::version()",          [](M& m, Step const& step) { m.result = m.colored(37, step.texts.at(0)); }},
        {"ColorTheme::cursor()",           [](M& m, Step const& step) { m.result = m.bright(36, step.texts.at(0)); }},
        {"ColorTheme::commandLine()",      [](M& m, Step const&) { m.result = m.sequence(36); }},
        {"ColorTheme::commandLine() of a text", [](M& m, Step const& step) { m.result = m.colored(37, step.texts.at(0)) + m.sequence(0); }},
        {"ColorTheme::path()",             [](M& m, Step const& step) { m.result = m.colored(36, step.texts.at(0)); }},
        {"ColorTheme::path() of a number", [](M& m, Step const& step) { m.result = m.colored(36, decimal(static_cast<unsigned>(step.numbers.at(0)))); }},
        {"ColorTheme::name()",             [](M& m, Step const& step) { m.result = m.bright(33, step.texts.at(0)); }},
        {"ColorTheme::status()",           [](M& m, Step const&) { m.result = m.sequence(35); }},
        {"DataTheme::immediate_destination()", [](M& m, Step const& step) { m.result = m.colored(36, byte_digits(step.numbers.at(0))); }},
        {"DataTheme::total_count()",       [](M& m, Step const& step) { m.result = m.bright(34, byte_digits(step.numbers.at(0))); }},
        {"DataTheme::request_title()",     [](M& m, Step const& step) { m.result = m.bright(35, step.texts.at(0)); }},
        {"DataTheme::response_title()",    [](M& m, Step const& step) { m.result = m.colored(35, step.texts.at(0)); }},

        // Hex dumps
        {"HexDump of a char",              [](M& m, Step const& step) { m.add_object(true, m.colored(32, byte_digits(step.numbers.at(0)))); }},
        {"HexDump of an unsigned char",    [](M& m, Step const& step) { m.add_object(true, m.colored(32, byte_digits(step.numbers.at(0)))); }},
        {"HexDump of an unsigned short",   [](M& m, Step const& step) { m.add_object(true, short_digits(step.numbers.at(0))); }},
        {"HexDump of an unsigned long",    [](M& m, Step const& step) { m.add_object(true, hexadecimal(long_word_of(step), 8)); }},
        {"HexDump of words",               [](M& m, Step const& step) {
            std::string text;
            for (int const number : step.numbers) {
                text += hexadecimal(static_cast<unsigned>(number), 8) + " ";
            }
            m.add_object(true, text);
        }},
        {"HexDump of bytes",               [](M& m, Step const& step) { m.add_object(true, m.byte_dump(step.texts.at(0), " ")); }},
        {"HexDump of bytes, separated",    [](M& m, Step const& step) { m.add_object(true, m.byte_dump(step.texts.at(0), step.texts.at(1))); }},
        {"HexDump of a string",            [](M& m, Step const& step) { m.add_object(true, m.byte_dump(step.texts.at(0), " ")); }},
        {"HexDump::raw_data_byte()",       [](M& m, Step const& step) { m.result = m.colored(32, byte_digits(step.numbers.at(0))); }},
        {"HexDump::raw_data() of a short", [](M& m, Step const& step) { m.result = short_digits(step.numbers.at(0)); }},
        {"HexDump::raw_data() of bytes",   [](M& m, Step const& step) { m.result = m.raw_data(step.texts.at(0)); }},
        {"rtrim()",                        [](M& m, Step const& step) { m.result = trimmed(step.texts.at(0)); }},
    };
    // clang-format on
};

void ClassicModel::act(Step const& step)
{
    if (HostOperation const* const operation = host_operation(step)) {
        operation->act(os, step);
    } else {
        Operations::all.at(step.operation)(*this, step);
    }
}

// Objects

// The first object is always there.
ModelObject& ClassicModel::object(Step const& step)
{
    if (objects.empty()) {
        add_object(false, "");
    }
    return objects[static_cast<std::size_t>(step.numbers.at(0)) % objects.size()];
}

void ClassicModel::add_object(bool is_dump, std::string const& object_text)
{
    ModelObject added;
    added.is_dump = is_dump;
    added.initial_color = use_color;
    added.text = object_text;
    objects.push_back(added);
}

void ClassicModel::destroy_object(Step const& step)
{
    use_color = object(step).initial_color;
    objects.erase(objects.begin() + step.numbers.at(0) % static_cast<int>(objects.size()));
}

void ClassicModel::flip(ModelObject& flipped)
{
    flipped.flipped = true;
    flipped.saved_color = is_using_color();
    use_color = !no_frills && !flipped.saved_color;
}

void ClassicModel::unflip(ModelObject const& unflipped)
{
    if (!unflipped.flipped) {
        throw "Unflipping when we never flipped in the first place!";
    }
    use_color = unflipped.saved_color;
}

// Codes

std::string ClassicModel::sequence(long long code) const
{
    return is_using_color() ? "\x1b[" + decimal(code) + "m" : "";
}

std::string ClassicModel::true_color(int a, int r, int g, int b) const
{
    return is_using_color() ? "\x1b[" + decimal(a) + ";2;" + decimal(r) + ";" + decimal(g) + ";" + decimal(b) + "m"
                            : "";
}

// A background, although it is named as a foreground is.
std::string ClassicModel::vga(int value) const
{
    if (value < 0 || value > 15) {
        throw UnknownCode{};
    }
    static int const colors[16][3] = {{0, 0, 0},       {128, 0, 0},   {0, 128, 0},   {128, 128, 0},
                                      {0, 0, 128},     {128, 0, 128}, {0, 128, 128}, {192, 192, 192},
                                      {128, 128, 128}, {255, 0, 0},   {0, 255, 0},   {255, 255, 0},
                                      {0, 0, 255},     {255, 0, 255}, {0, 255, 255}, {255, 255, 255}};
    return true_color(48, colors[value][0], colors[value][1], colors[value][2]);
}

std::string ClassicModel::colored(int code, std::string const& decorated) const { return sequence(code) + decorated; }

std::string ClassicModel::bright(int code, std::string const& decorated) const
{
    return sequence(1) + colored(code, decorated) + sequence(2);
}

// Hex dumps and time

std::string ClassicModel::byte_dump(std::string const& bytes, std::string const& separator) const
{
    if (bytes.empty()) {
        return "";
    }
    std::string dump;
    for (std::size_t i = 0; i < bytes.size() && (long_dumps || i < 19); ++i) {
        dump += colored(32, byte_digits(bytes[i])) + separator;
    }
    if (!long_dumps && bytes.size() > 19) {
        dump += " ... " + colored(33, "(") + colored(36, decimal(static_cast<long long>(bytes.size()))) + " bytes" +
                colored(33, ") ");
    }
    return dump + sequence(0);
}

std::string ClassicModel::raw_data(std::string const& bytes) const
{
    std::string const text = trimmed(byte_dump(bytes, " "));
    return text.empty() ? "nil" : text;
}

std::string ClassicModel::now() const { return stamp(clock + zone * 60LL); }

} // namespace hueline::test
