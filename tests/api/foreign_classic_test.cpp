// The classes of the string interface as a program declares them that has the shared object and none of its headers: fields,
// the order of the virtual functions, and exceptions that cross the border. Functions are their names alone, and the table of
// operations has those.

#include "support/testing.hpp"

namespace kestry {

// clang-format off
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

    static std::string color(HexColor_VGA const& v);

private:
    bool _flipped;
    bool _savedColor;
    bool _initialColor;

protected:
    std::string _text;
};

std::ostream& operator<<(std::ostream& os, Hueline const& h);

class HexDump : public Hueline {
public:
    HexDump(char b);
    ~HexDump() override;
};

} // namespace kestry

namespace {

using namespace kestry;

std::string text_of(Hueline const& colorizer)
{
    std::ostringstream os;
    EXPECT_EQ(&(os << colorizer), &os);
    return os.str();
}

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

TEST(ForeignClassic, TheSwitchesAreShared)
{
    Hueline putting_back;
    EXPECT_FALSE(Hueline::isUsingColor());
    putting_back.useColor(true);
    EXPECT_TRUE(Hueline::_useColor);
    Hueline::setNoFrillsMode(true);
    EXPECT_TRUE(Hueline::_noFrillsMode && Hueline::getNoFrillsMode());
    EXPECT_FALSE(Hueline::isUsingColor());
    Hueline::_noFrillsMode = false;
    EXPECT_FALSE(Hueline::getNoFrillsMode());
    Hueline::_useColor = false;
    EXPECT_FALSE(Hueline::isUsingColor());
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

} // namespace
