// The string interface as a program declares it that has the shared object and none of its headers. What is declared here
// is the binary interface: names, parameters, fields, the order of the virtual functions. All of it is called.

#include <exception>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kestry {

// clang-format off
enum class HexColor : int { reset = 0, bright = 1, dim = 2, red = 31, green, yellow, blue, magenta, cyan, white };
enum class HexColor_VGA : int { black, maroon, green, olive, navy, purple, teal, silver,
                                gray, red, lime, yellow, blue, fuchsia, aqua, white };
// clang-format on

class HuelineExceptionInterface : public std::exception {
public:
    ~HuelineExceptionInterface() override;
    char const* what() const noexcept override = 0;
};

class UnknownCodeException : public HuelineExceptionInterface {
public:
    ~UnknownCodeException() override;
    char const* what() const noexcept override;
};

class Hueline {
public:
    Hueline();
    virtual void flipColor();
    virtual void unflipColor();
    virtual ~Hueline();

    void useColor(bool on);
    static bool _useColor;
    static bool _noFrillsMode;
    static bool isUsingColor();
    static void setNoFrillsMode(bool on);
    static bool getNoFrillsMode();

    static std::string hide_cursor();
    static std::string show_cursor();

    static std::string color(HexColor const& code);
    static std::string bright_color(HexColor const& code);
    static std::string color(int a, int r, int g, int b);
    static std::string color(int r, int g, int b);
    static std::string color_bg(int r, int g, int b);
    static std::string color(HexColor_VGA const& v);
    static std::string color(HexColor const& code, unsigned char x);
    static std::string bright_color(HexColor const& code, unsigned char x);
    static std::string color(HexColor const& code, std::string const& s);
    static std::string bright_color(HexColor const& code, std::string const& s);

    static std::string time_stamp(std::string const& text);
    static std::string current_time();

private:
    bool _flipped;
    bool _savedColor;
    bool _initialColor;

protected:
    std::string _text;
};

std::ostream& operator<<(std::ostream& os, Hueline const& h);

namespace ColorTheme {

std::string app_title(std::string const& text);
std::string alert(std::string const& text);
std::string info(std::string const& text);
std::string default_text(std::string const& text);
std::string default_text();
std::string defaultOperatingSystemText();
std::string seperator(std::string const& text);
std::string help();
std::string help(std::string const& text);
std::string prompt(std::string const& text);
std::string version(std::string const& text);
std::string cursor(std::string const& text);
std::string commandLine();
std::string commandLine(std::string const& text);
std::string path(std::string const& text);
std::string path(unsigned const& number);
std::string name(std::string const& text);
std::string status();

} // namespace ColorTheme

namespace DataTheme {

std::string immediate_destination(unsigned char address);
std::string total_count(unsigned char count);
std::string request_title(std::string const& text);
std::string response_title(std::string const& text);

} // namespace DataTheme

class HexDump : public Hueline {
public:
    static bool _longDumps;
    static bool isLongDumps();
    HexDump(char b);
    HexDump(unsigned char b);
    HexDump(unsigned short u);
    HexDump(unsigned long w);
    HexDump(std::vector<unsigned int> const& v);
    HexDump(std::vector<unsigned char> const& v, std::string const& separator);
    HexDump(std::vector<unsigned char> const& v);
    HexDump(std::string const& s);
    ~HexDump() override;
    static std::string raw_data_byte(unsigned char b);
    static std::string raw_data(unsigned short u);
    static std::string raw_data(std::vector<unsigned char> const& v);
};

} // namespace kestry

std::string rtrim(std::string const& s);

namespace {

using namespace kestry;

using Bytes = std::vector<unsigned char>;
using Words = std::vector<unsigned int>;

std::string text_of(Hueline const& colorizer)
{
    std::ostringstream os;
    EXPECT_EQ(&(os << colorizer), &os);
    return os.str();
}

// Colour is in use while it lives.
class InColour {
public:
    InColour() { colorizer.useColor(true); }

private:
    Hueline colorizer;
};

// A colorizer of the program's own.
class Counting : public Hueline {
public:
    explicit Counting(std::string const& text) { _text = text; }
    void flipColor() override { ++flips; }
    void unflipColor() override { ++unflips; }
    int flips = 0;
    int unflips = 0;
};

class OwnException : public HuelineExceptionInterface {
public:
    char const* what() const noexcept override { return "of the program's own"; }
};

TEST(ForeignClassic, SwitchesAreShared)
{
    Hueline colorizer;
    EXPECT_FALSE(Hueline::isUsingColor());
    colorizer.useColor(true);
    EXPECT_TRUE(Hueline::isUsingColor());
    Hueline::setNoFrillsMode(true);
    EXPECT_TRUE(Hueline::getNoFrillsMode());
    EXPECT_FALSE(Hueline::isUsingColor());
    Hueline::setNoFrillsMode(false);
    EXPECT_TRUE(Hueline::isUsingColor());
}

TEST(ForeignClassic, FlipsAreCalledThroughTheirSlots)
{
    Hueline* const colorizer = new HexDump('A');
    colorizer->flipColor();
    EXPECT_TRUE(Hueline::isUsingColor());
    colorizer->unflipColor();
    EXPECT_FALSE(Hueline::isUsingColor());
    colorizer->useColor(true);
    delete colorizer;
    EXPECT_FALSE(Hueline::isUsingColor());
}

TEST(ForeignClassic, FlipsAreCalledByName)
{
    Hueline colorizer;
    colorizer.Hueline::flipColor();
    EXPECT_TRUE(Hueline::isUsingColor());
    colorizer.Hueline::unflipColor();
    EXPECT_FALSE(Hueline::isUsingColor());
}

TEST(ForeignClassic, AProgramsOwnColorizerIsWritten)
{
    Counting own("text");
    Hueline& colorizer = own;
    colorizer.flipColor();
    colorizer.unflipColor();
    colorizer.unflipColor();
    EXPECT_EQ(own.flips, 1);
    EXPECT_EQ(own.unflips, 2);
    EXPECT_EQ(text_of(own), "text");
}

TEST(ForeignClassic, UnflippingWithoutAFlipThrowsItsText)
{
    Hueline colorizer;
    try {
        colorizer.unflipColor();
        FAIL() << "nothing was thrown";
    } catch (char const* text) {
        EXPECT_STREQ(text, "Unflipping when we never flipped in the first place!");
    }
}

TEST(ForeignClassic, ExceptionsCrossTheBorder)
{
    EXPECT_THROW(Hueline::color(static_cast<HexColor_VGA>(16)), UnknownCodeException);
    EXPECT_THROW(Hueline::color(static_cast<HexColor_VGA>(16)), HuelineExceptionInterface);
    try {
        Hueline::color(static_cast<HexColor_VGA>(16));
        FAIL() << "nothing was thrown";
    } catch (std::exception const& e) {
        EXPECT_STREQ(e.what(), "UnknownCodeException passed to Hueline");
    }
    EXPECT_STREQ(UnknownCodeException().what(), "UnknownCodeException passed to Hueline");
    EXPECT_THROW(throw UnknownCodeException(), HuelineExceptionInterface);
    EXPECT_THROW(throw OwnException(), HuelineExceptionInterface);
}

TEST(ForeignClassic, SequencesAreReturned)
{
    InColour const scope;
    EXPECT_EQ(Hueline::hide_cursor(), "\x1b[?25l");
    EXPECT_EQ(Hueline::show_cursor(), "\x1b[?25h");
    EXPECT_EQ(Hueline::color(HexColor::red), "\x1b[31m");
    EXPECT_EQ(Hueline::bright_color(HexColor::red), "\x1b[91m");
    EXPECT_EQ(Hueline::color(48, 300, -1, 0), "\x1b[48;2;300;-1;0m");
    EXPECT_EQ(Hueline::color(10, 20, 30), "\x1b[38;2;10;20;30m");
    EXPECT_EQ(Hueline::color_bg(1, 2, 3), "\x1b[48;2;1;2;3m");
    EXPECT_EQ(Hueline::color(HexColor_VGA::silver), "\x1b[48;2;192;192;192m");
    EXPECT_EQ(Hueline::color(HexColor::cyan, 0x0a), "\x1b[36m0a");
    EXPECT_EQ(Hueline::bright_color(HexColor::blue, 0xff), "\x1b[1m\x1b[34mff\x1b[2m");
    EXPECT_EQ(Hueline::color(HexColor::cyan, "x"), "\x1b[36mx");
    EXPECT_EQ(Hueline::bright_color(HexColor::blue, "x"), "\x1b[1m\x1b[34mx\x1b[2m");
}

TEST(ForeignClassic, TimeStampsAreReturned)
{
    EXPECT_EQ(Hueline::time_stamp("text"), "text");
    EXPECT_EQ(Hueline::current_time().size(), 21u);
}

TEST(ForeignClassic, ColorThemesAreReturned)
{
    InColour const scope;
    EXPECT_EQ(ColorTheme::app_title("a"), "\x1b[32ma");
    EXPECT_EQ(ColorTheme::alert("a"), "\x1b[1m\x1b[31ma\x1b[2m");
    EXPECT_EQ(ColorTheme::info("a"), "\x1b[33ma");
    EXPECT_EQ(ColorTheme::default_text("a"), "\x1b[36ma");
    EXPECT_EQ(ColorTheme::default_text(), "\x1b[32m");
    EXPECT_EQ(ColorTheme::defaultOperatingSystemText(), "\x1b[0m");
    EXPECT_EQ(ColorTheme::seperator("a"), "\x1b[37ma");
    EXPECT_EQ(ColorTheme::help(), "\x1b[33m");
    EXPECT_EQ(ColorTheme::help("a"), "\x1b[34ma");
    EXPECT_EQ(ColorTheme::prompt("a"), "\x1b[35ma");
    EXPECT_EQ(ColorTheme::version("a"), "\x1b[37ma");
    EXPECT_EQ(ColorTheme::cursor("a"), "\x1b[1m\x1b[36ma\x1b[2m");
    EXPECT_EQ(ColorTheme::commandLine(), "\x1b[36m");
    EXPECT_EQ(ColorTheme::commandLine("a"), "\x1b[37ma\x1b[0m");
    EXPECT_EQ(ColorTheme::path("a"), "\x1b[36ma");
    EXPECT_EQ(ColorTheme::path(4294967295u), "\x1b[36m4294967295");
    EXPECT_EQ(ColorTheme::name("a"), "\x1b[1m\x1b[33ma\x1b[2m");
    EXPECT_EQ(ColorTheme::status(), "\x1b[35m");
}

TEST(ForeignClassic, DataThemesAreReturned)
{
    InColour const scope;
    EXPECT_EQ(DataTheme::immediate_destination(0x0a), "\x1b[36m0a");
    EXPECT_EQ(DataTheme::total_count(0x7f), "\x1b[1m\x1b[34m7f\x1b[2m");
    EXPECT_EQ(DataTheme::request_title("a"), "\x1b[1m\x1b[35ma\x1b[2m");
    EXPECT_EQ(DataTheme::response_title("a"), "\x1b[35ma");
}

TEST(ForeignClassic, DumpsAreBuiltFromEveryKindOfValue)
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

TEST(ForeignClassic, TheSwitchOfLongDumpsIsShared)
{
    Bytes const bytes(20);
    EXPECT_FALSE(HexDump::isLongDumps());
    EXPECT_EQ(text_of(HexDump(bytes, "")), "00000000000000000000000000000000000000 ... (20 bytes) ");
    HexDump::_longDumps = true;
    EXPECT_TRUE(HexDump::isLongDumps());
    EXPECT_EQ(text_of(HexDump(bytes, "")), "0000000000000000000000000000000000000000");
}

TEST(ForeignClassic, TheSwitchesAreShared)
{
    Hueline const putting_back;
    Hueline::_useColor = true;
    EXPECT_TRUE(Hueline::isUsingColor());
    Hueline::_noFrillsMode = true;
    EXPECT_FALSE(Hueline::isUsingColor());
    EXPECT_TRUE(Hueline::getNoFrillsMode());
    Hueline::_noFrillsMode = false;
    EXPECT_TRUE(Hueline::isUsingColor());
}

TEST(ForeignClassic, WhiteSpaceIsTrimmed) { EXPECT_EQ(rtrim("ab \t\n"), "ab"); }

} // namespace
