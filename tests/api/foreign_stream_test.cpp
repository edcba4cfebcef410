// The stream interface as a program declares it that has the shared object and none of its headers. What is declared
// here is the binary interface: names, parameters, the fields of every struct. All of it is called.

#include <cstdint>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kestry::Hueline {

using Manipulator = std::ostream&(std::ostream&);

Manipulator colorize, nocolorize, color_mode_state, frills_mode_state;
bool _isUsingColor();
void _setNoFrillsMode(bool on);
bool _getNoFrillsMode();

class UseColorMode {
public:
    UseColorMode();
    ~UseColorMode();
};

class NoColorMode {
public:
    NoColorMode();
    ~NoColorMode();
};

class NoFrillsMode {
public:
    NoFrillsMode();
    ~NoFrillsMode();

private:
    bool saved;
};

class UseFrillsMode {
public:
    UseFrillsMode();
    ~UseFrillsMode();

private:
    bool saved;
};

Manipulator adjust, push, pull, normal, reset;

Manipulator bold, thin, dark, lite, bright;
Manipulator italic, noitalic, underline, nounderline, blink, noblink, reverse, noreverse;
Manipulator concealed, crossed;
Manipulator grey, red, green, yellow, blue, magenta, cyan, white, black;
Manipulator on_grey, on_red, on_green, on_yellow, on_blue, on_magenta, on_cyan, on_white, on_black;

std::ostream& next(std::ostream& os, int index, bool background);
std::string col(std::string const& name);

// clang-format off
struct color    { int code; };
struct on_color { int code; };
struct rgb      { int r; int g; int b; };
struct on_rgb   { int r; int g; int b; };
// clang-format on
std::ostream& operator<<(std::ostream& os, color const& c);
std::ostream& operator<<(std::ostream& os, on_color const& c);
std::ostream& operator<<(std::ostream& os, rgb const& c);
std::ostream& operator<<(std::ostream& os, on_rgb const& c);

namespace csi {

Manipulator show, hide, cr, lf, cls, clr, clear, dsr, scp, rcp;

// clang-format off
struct ed    { int n; };
struct el    { int n; };
struct cuu   { int n; };
struct cud   { int n; };
struct cuf   { int n; };
struct cub   { int n; };
struct cnl   { int n; };
struct cpl   { int n; };
struct cha   { int n; };
struct su    { int n; };
struct sd    { int n; };
struct sgr   { int n; };
struct cup   { int row; int col; };
struct hvp   { int row; int col; };
struct delay { int ms; };
// clang-format on
std::ostream& operator<<(std::ostream& os, ed const& p);
std::ostream& operator<<(std::ostream& os, el const& p);
std::ostream& operator<<(std::ostream& os, cuu const& p);
std::ostream& operator<<(std::ostream& os, cud const& p);
std::ostream& operator<<(std::ostream& os, cuf const& p);
std::ostream& operator<<(std::ostream& os, cub const& p);
std::ostream& operator<<(std::ostream& os, cnl const& p);
std::ostream& operator<<(std::ostream& os, cpl const& p);
std::ostream& operator<<(std::ostream& os, cha const& p);
std::ostream& operator<<(std::ostream& os, su const& p);
std::ostream& operator<<(std::ostream& os, sd const& p);
std::ostream& operator<<(std::ostream& os, sgr const& p);
std::ostream& operator<<(std::ostream& os, cup const& p);
std::ostream& operator<<(std::ostream& os, hvp const& p);
std::ostream& operator<<(std::ostream& os, delay const& p);

std::string color(int n);
std::string rgb(int r, int g, int b);
std::string on_rgb(int r, int g, int b);

} // namespace csi

struct spinner {
    std::string const& frames;
    std::string label;
};

struct status_line {
    int position;
    int start;
    int end;
    std::string const& done;
    std::string todo;
    std::string prefix;
    std::string suffix;
    std::string frames;
    std::string spin_label;
};

struct progress_meter {
    int position;
    int start;
    int end;
    std::string const& label;
    std::string lead;
    std::string after;
    std::string before;
};

std::ostream& operator<<(std::ostream& os, spinner const& s);
std::ostream& operator<<(std::ostream& os, status_line const& s);
std::ostream& operator<<(std::ostream& os, progress_meter const& m);

namespace ColorTheme {

// clang-format off
struct app_title    { std::string text; };
struct alert        { std::string text; };
struct info         { std::string text; };
struct default_text { std::string text; };
struct seperator    { std::string text; };
struct help         { std::string text; };
struct prompt       { std::string text; };
struct version      { std::string text; };
struct cursor       { std::string text; };
struct commandLine  { std::string text; };
struct name         { std::string text; };
struct path         { bool is_text; std::string text; std::uint32_t number; };
// clang-format on
std::ostream& operator<<(std::ostream& os, app_title const& t);
std::ostream& operator<<(std::ostream& os, alert const& t);
std::ostream& operator<<(std::ostream& os, info const& t);
std::ostream& operator<<(std::ostream& os, default_text const& t);
std::ostream& operator<<(std::ostream& os, seperator const& t);
std::ostream& operator<<(std::ostream& os, help const& t);
std::ostream& operator<<(std::ostream& os, prompt const& t);
std::ostream& operator<<(std::ostream& os, version const& t);
std::ostream& operator<<(std::ostream& os, cursor const& t);
std::ostream& operator<<(std::ostream& os, commandLine const& t);
std::ostream& operator<<(std::ostream& os, name const& t);
std::ostream& operator<<(std::ostream& os, path const& p);

Manipulator _default_text, _help, _commandLine, _status;

} // namespace ColorTheme

namespace DataTheme {

// clang-format off
struct immediate_destination { std::uint8_t byte; };
struct total_count           { std::uint8_t byte; };
struct crc                   { bool is_wide; std::uint8_t narrow; std::uint16_t wide; };
struct request_title         { std::string text; };
struct response_title        { std::string text; };
// clang-format on
std::ostream& operator<<(std::ostream& os, immediate_destination const& b);
std::ostream& operator<<(std::ostream& os, total_count const& b);
std::ostream& operator<<(std::ostream& os, crc const& c);
std::ostream& operator<<(std::ostream& os, request_title const& t);
std::ostream& operator<<(std::ostream& os, response_title const& t);

} // namespace DataTheme

class HexDump {
public:
    static bool _longDumps;
    HexDump(char b);
    HexDump(unsigned char b);
    HexDump(unsigned short u);
    HexDump(unsigned long w);
    HexDump(std::vector<unsigned int> const& v);
    HexDump(std::vector<unsigned char> const& v, std::string const& separator);
    HexDump(std::vector<unsigned char> const& v);
    HexDump(std::string const& s);
    static std::string raw_data_byte(unsigned char b);
    static std::string raw_data(unsigned short u);
    static std::string raw_data(std::vector<unsigned char> const& v);

private:
    std::string _text;
};

std::ostream& operator<<(std::ostream& os, HexDump const& d);

struct parameters_template {
    int code;
};

std::ostream& operator<<(std::ostream& os, parameters_template const& p);

Manipulator crossplatform_template, platformspecific_template;
Manipulator colorized_crossplatform_template, colorized_platformspecific_template;
Manipulator test_pattern_supported_m_codes, test_pattern_normal_reset, test_pattern_matrix;
Manipulator test_pattern_256bit, test_pattern_greyscale, test_pattern_rgb;
Manipulator test_pattern_status_line, test_pattern_progress_line;
Manipulator build_version_short, build_version;

} // namespace kestry::Hueline

struct myfillandw {
    char fill;
    int width;
};

std::ostream& operator<<(std::ostream& os, myfillandw const& m);

namespace {

using namespace kestry::Hueline;

using Bytes = std::vector<unsigned char>;
using Words = std::vector<unsigned int>;

// What a value writes to a string stream, where no gate passes.
template <class Value>
std::string text_of(Value const& value)
{
    std::ostringstream os;
    os << value;
    return os.str();
}

template <>
std::string text_of(Manipulator* const& manipulator)
{
    std::ostringstream os;
    EXPECT_EQ(&manipulator(os), &os);
    return os.str();
}

std::string first_line_of(Manipulator* manipulator)
{
    std::string const text = text_of(manipulator);
    return text.substr(0, text.find('\n'));
}

TEST(ForeignStream, GatedManipulatorsWriteNothingToAString)
{
    // clang-format off
    std::vector<Manipulator*> const gated{
        adjust, push, pull, normal, reset,
        bold, thin, dark, lite, bright,
        italic, noitalic, underline, nounderline, blink, noblink, reverse, noreverse,
        concealed, crossed,
        grey, red, green, yellow, blue, magenta, cyan, white, black,
        on_grey, on_red, on_green, on_yellow, on_blue, on_magenta, on_cyan, on_white, on_black,
        csi::show, csi::hide, csi::cls, csi::clr, csi::clear, csi::dsr, csi::scp, csi::rcp,
        ColorTheme::_default_text, ColorTheme::_help, ColorTheme::_commandLine, ColorTheme::_status,
        colorized_crossplatform_template, colorized_platformspecific_template, test_pattern_supported_m_codes,
        colorize, nocolorize, // not gated, but without a text of their own
    };
    // clang-format on
    for (Manipulator* const manipulator : gated) {
        EXPECT_EQ(text_of(manipulator), "");
    }
}

TEST(ForeignStream, GatedValuesWriteNothingToAString)
{
    std::ostringstream os;
    os << color{200} << on_color{201} << rgb{1, 2, 3} << on_rgb{4, 5, 6};
    os << csi::ed{2} << csi::el{0} << csi::cuu{1} << csi::cud{1} << csi::cuf{1} << csi::cub{1} << csi::cnl{1};
    os << csi::cpl{1} << csi::cha{1} << csi::su{1} << csi::sd{1} << csi::sgr{31} << csi::cup{3, 7} << csi::hvp{3, 7};
    os << csi::delay{60000} << parameters_template{4};
    EXPECT_EQ(&next(os, 1, false), &os);
    EXPECT_EQ(os.str(), "");
}

TEST(ForeignStream, ModesAreReportedInWords)
{
    EXPECT_EQ(text_of(color_mode_state), " use color mode is off \n (you should not be seeing color) \n");
    EXPECT_EQ(text_of(frills_mode_state), " no frills mode is off \n");
}

TEST(ForeignStream, GuardsHoldTheirModeForAScope)
{
    EXPECT_FALSE(_isUsingColor());
    {
        UseColorMode const colour;
        EXPECT_TRUE(_isUsingColor());
        NoColorMode const none;
        EXPECT_FALSE(_isUsingColor());
    }
    {
        NoFrillsMode const plain;
        EXPECT_TRUE(_getNoFrillsMode());
        {
            UseFrillsMode const rich;
            EXPECT_FALSE(_getNoFrillsMode());
        }
        EXPECT_TRUE(_getNoFrillsMode());
    }
    EXPECT_FALSE(_getNoFrillsMode());
    _setNoFrillsMode(true);
    EXPECT_TRUE(_getNoFrillsMode());
    _setNoFrillsMode(false);
    EXPECT_FALSE(_getNoFrillsMode());
}

TEST(ForeignStream, StringsAreReturned)
{
    EXPECT_EQ(col("red"), "red       ");
    EXPECT_EQ(csi::color(38), "\x1b[38m");
    EXPECT_EQ(csi::rgb(255, 128, 0), "\x1b[38;2;255;128;0m");
    EXPECT_EQ(csi::on_rgb(0, 0, 0), "\x1b[48;2;0;0;0m");
}

TEST(ForeignStream, LineControlsAreNotGated)
{
    EXPECT_EQ(text_of(csi::cr), "\r");
    EXPECT_EQ(text_of(csi::lf), "\n");
}

TEST(ForeignStream, IndicatorsReadTheirFields)
{
    std::string const frames = "|/-\\";
    std::string const done = "#";
    std::string const label = "completed";
    EXPECT_EQ(text_of(spinner{frames, "busy "}), "busy /");
    EXPECT_EQ(text_of(status_line{2, 0, 5, done, ".", "[", "]", frames, "<"}), "[##<-..]");
    EXPECT_EQ(text_of(progress_meter{24, 0, 49, label, "(", ")", "~"}), "(completed ~48%)");
}

TEST(ForeignStream, ThemesReadTheirFields)
{
    EXPECT_EQ(text_of(ColorTheme::app_title{"a"}), "a");
    EXPECT_EQ(text_of(ColorTheme::alert{"b"}), "b");
    EXPECT_EQ(text_of(ColorTheme::info{"c"}), "c");
    EXPECT_EQ(text_of(ColorTheme::default_text{"d"}), "d");
    EXPECT_EQ(text_of(ColorTheme::seperator{"e"}), "e");
    EXPECT_EQ(text_of(ColorTheme::help{"f"}), "f");
    EXPECT_EQ(text_of(ColorTheme::prompt{"g"}), "g");
    EXPECT_EQ(text_of(ColorTheme::version{"h"}), "h");
    EXPECT_EQ(text_of(ColorTheme::cursor{"i"}), "i");
    EXPECT_EQ(text_of(ColorTheme::commandLine{"j"}), "j");
    EXPECT_EQ(text_of(ColorTheme::name{"k"}), "k");
    EXPECT_EQ(text_of(ColorTheme::path{true, "l", 7}), "l");
    EXPECT_EQ(text_of(ColorTheme::path{false, "m", 4294967295}), "4294967295");
    EXPECT_EQ(text_of(DataTheme::immediate_destination{0x0a}), "0a");
    EXPECT_EQ(text_of(DataTheme::total_count{0xff}), "ff");
    EXPECT_EQ(text_of(DataTheme::crc{true, 0x12, 0xbeef}), "be ef ");
    EXPECT_EQ(text_of(DataTheme::crc{false, 0x12, 0xbeef}), "12");
    EXPECT_EQ(text_of(DataTheme::request_title{"AB"}), "41 42 ");
    EXPECT_EQ(text_of(DataTheme::response_title{"AB"}), "41 42 ");
}

TEST(ForeignStream, DumpsAreBuiltFromEveryKindOfValue)
{
    EXPECT_EQ(text_of(HexDump('A')), "41");
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned char>(0x05))), "05");
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0x1f))), "0x001f");
    EXPECT_EQ(text_of(HexDump(0x1234ul)), "00001234");
    EXPECT_EQ(text_of(HexDump(Words{1, 0xabcdef})), "00000001 00abcdef ");
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0xff}, ":")), "01:ff:");
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0xff})), "01 ff ");
    EXPECT_EQ(text_of(HexDump(std::string("AB"))), "41 42 ");
    EXPECT_EQ(HexDump::raw_data_byte(0x0a), "0a");
    EXPECT_EQ(HexDump::raw_data(static_cast<unsigned short>(0x0a)), "0x000a");
    EXPECT_EQ(HexDump::raw_data(Bytes{}), "nil");
}

TEST(ForeignStream, TheSwitchOfLongDumpsIsShared)
{
    Bytes const bytes(20);
    EXPECT_FALSE(HexDump::_longDumps);
    EXPECT_EQ(text_of(HexDump(bytes, "")), "00000000000000000000000000000000000000 ... (20 bytes) ");
    HexDump::_longDumps = true;
    EXPECT_EQ(text_of(HexDump(bytes, "")), "0000000000000000000000000000000000000000");
}

TEST(ForeignStream, FillAndWidthAreSetAtOnce)
{
    std::ostringstream os;
    os << myfillandw{'*', 6} << 42;
    EXPECT_EQ(os.str(), "****42");
}

TEST(ForeignStream, DemonstrationsWriteTheirText)
{
    EXPECT_EQ(first_line_of(crossplatform_template), "this is a cross platform template");
    EXPECT_EQ(first_line_of(platformspecific_template), "\x1b[00mthis is a platform specific template");
    EXPECT_EQ(first_line_of(test_pattern_normal_reset), "reset colorize dark thin ");
    EXPECT_EQ(first_line_of(test_pattern_matrix), " no frills mode is off ");
    EXPECT_EQ(first_line_of(test_pattern_256bit), "reset colorize dark thin ");
    EXPECT_EQ(first_line_of(test_pattern_greyscale),
              "reset colorize  232-255:  grayscale from black to white in 24 steps");
    EXPECT_EQ(first_line_of(test_pattern_rgb), "reset colorize dark thin ");
    EXPECT_EQ(text_of(test_pattern_status_line).substr(0, 19), "\r\x1b[40m\x1b[32m[\x1b[40m\x1b[");
    EXPECT_EQ(text_of(test_pattern_progress_line).substr(0, 19), "\r\x1b[40m\x1b[32m(\x1b[40m\x1b[");
    EXPECT_EQ(text_of(build_version_short), "Hueline ver. 0.2.2-r0");
    EXPECT_EQ(first_line_of(build_version), "Kestry Hueline Library (Hueline)");
}

} // namespace
