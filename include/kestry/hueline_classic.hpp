/// \file
/// Colour and decoration as strings: the string interface of libhueline.
///
///     kestry::Hueline mode;
///     mode.useColor(true);
///     std::cout << kestry::Hueline::color(kestry::HexColor::red, "failed")
///               << kestry::Hueline::color(kestry::HexColor::reset) << '\n';
///
/// One pair of switches governs everything: colour is in use while the colour switch is on and no-frills
/// mode is off. The colour switch is set by useColor, flipColor, unflipColor and by assignment, and put
/// back by the destructor. While colour is not in use, every function returns its text plain. No function
/// here looks at a stream or asks for a terminal: the caller decides.
///
/// Every function that returns a string throws std::bad_alloc when memory runs out.
///
/// The switches are plain process-wide data without locks: one thread at a time.
///
/// This header and hueline_stream.hpp give the name kestry::Hueline two meanings and share no state. A
/// program may use both, in different translation units.
#ifdef KESTRY_HUELINE_STREAM_HPP
#error "hueline_classic.hpp and hueline_stream.hpp are never included together: use one of them in another source file"
#elif !defined(KESTRY_HUELINE_CLASSIC_HPP)
#define KESTRY_HUELINE_CLASSIC_HPP

#include <exception>
#include <iosfwd>
#include <string>
#include <vector>

#if defined(__GLIBCXX__) && !_GLIBCXX_USE_CXX11_ABI
#error "libhueline passes strings of the C++11 layout: compile without _GLIBCXX_USE_CXX11_ABI=0"
#endif

#pragma GCC visibility push(default)

namespace kestry {

/// \addtogroup hueline_string_color
/// \{

/// SGR codes. Any other int is a valid code too: static_cast<HexColor>(40) is a black background.
enum class HexColor : int {
    reset = 0,    ///< The default rendition.
    bright = 1,   ///< Bold.
    dim = 2,      ///< Faint.
    red = 31,     ///< Foreground red.
    green = 32,   ///< Foreground green.
    yellow = 33,  ///< Foreground yellow.
    blue = 34,    ///< Foreground blue.
    magenta = 35, ///< Foreground magenta.
    cyan = 36,    ///< Foreground cyan.
    white = 37,   ///< Foreground white.
};

/// The sixteen colours of the VGA palette. No other value is valid.
enum class HexColor_VGA : int {
    black = 0,    ///< 0, 0, 0
    maroon = 1,   ///< 128, 0, 0
    green = 2,    ///< 0, 128, 0
    olive = 3,    ///< 128, 128, 0
    navy = 4,     ///< 0, 0, 128
    purple = 5,   ///< 128, 0, 128
    teal = 6,     ///< 0, 128, 128
    silver = 7,   ///< 192, 192, 192
    gray = 8,     ///< 128, 128, 128
    red = 9,      ///< 255, 0, 0
    lime = 10,    ///< 0, 255, 0
    yellow = 11,  ///< 255, 255, 0
    blue = 12,    ///< 0, 0, 255
    fuchsia = 13, ///< 255, 0, 255
    aqua = 14,    ///< 0, 255, 255
    white = 15,   ///< 255, 255, 255
};

/// \}

/// \addtogroup hueline_errors
/// \{

/// What the exceptions of this interface have in common.
class HuelineExceptionInterface : public std::exception {
public:
    ~HuelineExceptionInterface() override; ///< Virtual, as that of std::exception.
    /// Says what happened.
    char const* what() const noexcept override = 0;
};

/// A colour code outside a closed table.
class UnknownCodeException : public HuelineExceptionInterface {
public:
    ~UnknownCodeException() override; ///< Virtual, as that of std::exception.
    /// "UnknownCodeException passed to Hueline"
    char const* what() const noexcept override;
};

/// \}

/// \addtogroup hueline_string_color
/// \{

/// The colour switch, a scope guard for it, and the functions that it governs.
///
/// An object remembers the switch when it is constructed and puts that value back when it is
/// destroyed, whatever was set in between and by whom. A copy remembers the same value. Objects that
/// are destroyed out of order leave the value of the last one destroyed.
class Hueline {
public:
    /// Remembers the colour switch.
    Hueline();
    Hueline(Hueline const&) = default; ///< Has the text of the other object, and remembers what it remembers.
    /// Takes over everything, or nothing if memory runs out.
    Hueline& operator=(Hueline const& from)
    {
        _text = from._text; // first: it alone can fail
        _flipped = from._flipped;
        _savedColor = from._savedColor;
        _initialColor = from._initialColor;
        return *this;
    }

    /// \name Colour for a scope
    /// \{

    /// Inverts the colour switch: off when colour is in use, on when it is not, and off in no-frills
    /// mode. Remembers for unflipColor whether colour was in use.
    virtual void flipColor();

    /// Sets the colour switch to what flipColor remembered: whether colour was in use, so a flip in
    /// no-frills mode leaves it off. A second call does the same again.
    ///
    /// Throws  a char const*, "Unflipping when we never flipped in the first place!", when this object
    ///         was never flipped; the switch is unchanged then.
    virtual void unflipColor();
    /// \}

    /// Puts the colour switch back to what it was at construction. No-frills mode stays as it is.
    virtual ~Hueline();

    /// \name Switches
    /// \{
    static bool _useColor;     ///< The colour switch itself: plain data, assigned by useColor.
    static bool _noFrillsMode; ///< No-frills mode itself: plain data, assigned by setNoFrillsMode.

    void useColor(bool on);               ///< Sets the colour switch of the process. It is off at load.
    static bool isUsingColor();           ///< Whether the colour switch is on and no-frills mode off.
    static void setNoFrillsMode(bool on); ///< Turns no-frills mode on or off. It is off at load.
    static bool getNoFrillsMode();        ///< Whether no-frills mode is on.
    /// \}

    /// \name Cursor
    /// Empty while colour is not in use.
    /// \{
    static std::string hide_cursor(); ///< Hides the cursor: DECTCEM reset, "\x1b[?25l".
    static std::string show_cursor(); ///< Shows the cursor: DECTCEM set, "\x1b[?25h".
    /// \}

    /// \name Sequences
    /// Empty while colour is not in use. Numbers are plain decimal; no code or component is checked.
    /// \{
    static std::string color(HexColor const& code);        ///< SGR (ECMA-48 8.3.117): "\x1b[" code "m".
    static std::string bright_color(HexColor const& code); ///< SGR of the bright variant: "\x1b[" code + 60 "m".
    static std::string color(int a, int r, int g, int b);  ///< "\x1b[" a ";2;" r ";" g ";" b "m": a is 38 or 48.
    static std::string color(int r, int g, int b);         ///< 24-bit foreground: "\x1b[38;2;" r ";" g ";" b "m".
    static std::string color_bg(int r, int g, int b);      ///< 24-bit background: "\x1b[48;2;" r ";" g ";" b "m".

    /// 24-bit background in a VGA colour, although it is named as a foreground is.
    ///
    /// Throws  UnknownCodeException for any value but 0 to 15, also while colour is not in use.
    static std::string color(HexColor_VGA const& v);
    /// \}

    /// \name Decorated text
    /// The digits or the text alone while colour is not in use. The colour stays in force after the
    /// text. The bright forms stand between SGR 1 and SGR 2, which is no reset: bold and faint stay.
    /// \{
    static std::string color(HexColor const& code, unsigned char x);      ///< color(code), two lower-case hex digits.
    static std::string color(HexColor const& code, std::string const& s); ///< color(code), s.
    /// "\x1b[1m", color(code), two lower-case hex digits, "\x1b[2m".
    static std::string bright_color(HexColor const& code, unsigned char x);
    /// "\x1b[1m", color(code), s, "\x1b[2m".
    static std::string bright_color(HexColor const& code, std::string const& s);
    /// \}

    /// \addtogroup hueline_time
    /// \{
    /// \name Time stamps
    /// In cyan, which stays in force after them.
    /// \{
    static std::string time_stamp(std::string const& text); ///< color(HexColor::cyan, text).

    /// time_stamp of the local time, as strftime(3) writes "[%Y-%m-%d.%X]".
    ///
    /// %X follows the C locale of the process; in the default one the stamp has 21 characters. A
    /// stamp of more than 79 characters is not written whole. Uses localtime(3) and its static record.
    static std::string current_time();
    /// \}

    /// \}

    friend std::ostream& operator<<(std::ostream& os, Hueline const& h);

private:
    bool _flipped;      // flipColor has run on this object
    bool _savedColor;   // isUsingColor() at the last flipColor
    bool _initialColor; // _useColor at construction

protected:
    std::string _text; ///< What the insertion writes; filled by derived classes.
};

/// Writes the text that a derived class has put into the object, as a std::string is written. Does
/// not look at the switches.
std::ostream& operator<<(std::ostream& os, Hueline const& h);

/// \}

/// Texts by their role in a user interface. Only commandLine(text) ends its colour.
///
/// While colour is not in use, the text alone or an empty string.
namespace ColorTheme {
/// \addtogroup hueline_string_themes
/// \{

std::string app_title(std::string const& text);    ///< "\x1b[32m" text: green.
std::string alert(std::string const& text);        ///< "\x1b[1m\x1b[31m" text "\x1b[2m": bright red.
std::string info(std::string const& text);         ///< "\x1b[33m" text: yellow.
std::string default_text(std::string const& text); ///< "\x1b[36m" text: cyan.
std::string default_text();                        ///< "\x1b[32m": green.
std::string defaultOperatingSystemText();          ///< "\x1b[0m": the default rendition.
std::string seperator(std::string const& text);    ///< "\x1b[37m" text: white.
std::string help();                                ///< "\x1b[33m": yellow.
std::string help(std::string const& text);         ///< "\x1b[34m" text: blue.
std::string prompt(std::string const& text);       ///< "\x1b[35m" text: magenta.
std::string version(std::string const& text);      ///< "\x1b[37m" text: white.
std::string cursor(std::string const& text);       ///< "\x1b[1m\x1b[36m" text "\x1b[2m": bright cyan.
std::string commandLine();                         ///< "\x1b[36m": cyan.
std::string commandLine(std::string const& text);  ///< "\x1b[37m" text "\x1b[0m": white, and the end of it.
std::string path(std::string const& text);         ///< "\x1b[36m" text: cyan.
std::string path(unsigned const& number);          ///< "\x1b[36m" and the number in decimal: cyan.
std::string name(std::string const& text);         ///< "\x1b[1m\x1b[33m" text "\x1b[2m": bright yellow.
std::string status();                              ///< "\x1b[35m": magenta.

/// \}
} // namespace ColorTheme

/// The fields of a request or response frame. None of them ends its colour.
///
/// While colour is not in use, the digits or the text alone.
namespace DataTheme {
/// \addtogroup hueline_string_themes
/// \{

std::string immediate_destination(unsigned char address); ///< "\x1b[36m" and two digits: cyan.
std::string total_count(unsigned char count);             ///< "\x1b[1m\x1b[34m", two digits, "\x1b[2m": bright blue.
std::string request_title(std::string const& text);       ///< "\x1b[1m\x1b[35m" text "\x1b[2m": bright magenta.
std::string response_title(std::string const& text);      ///< "\x1b[35m" text: magenta.

/// \}
} // namespace DataTheme

/// \addtogroup hueline_string_dump
/// \{

/// A hex dump, rendered when it is constructed: std::cout << kestry::HexDump(frame).
///
/// Bytes are green while colour is in use at that moment; words never have a colour. Digits are lower
/// case. A dump is a Hueline: it puts the colour switch back when it is destroyed.
///
/// Throws  std::bad_alloc while the text is built, and nothing else.
class HexDump : public Hueline {
public:
    /// Whether dumps of bytes are written in full. False at load: they are cut after 19 bytes. Read
    /// when a dump is constructed; plain data, assign to it.
    static bool _longDumps;
    static bool isLongDumps(); ///< Whether dumps of bytes are written in full.

    HexDump(char b);           ///< "\x1b[32m" and two digits: the byte, taken as unsigned.
    HexDump(unsigned char b);  ///< "\x1b[32m" and two digits.
    HexDump(unsigned short u); ///< "0x" and four digits.
    HexDump(unsigned long w);  ///< At least eight digits, no prefix.

    /// Eight digits and a blank for each word, never cut.
    HexDump(std::vector<unsigned int> const& v);

    /// "\x1b[32m", two digits and the separator for each byte, the last one included, and "\x1b[0m" at
    /// the end. Unless _longDumps, more than 19 bytes are cut after the nineteenth, and
    /// " ... \x1b[33m(\x1b[36mN bytes\x1b[33m) " follows, N being the size of v. No bytes, no text.
    HexDump(std::vector<unsigned char> const& v, std::string const& separator);

    HexDump(std::vector<unsigned char> const& v); ///< With a blank as the separator.
    HexDump(std::string const& s);                ///< The bytes of s, with a blank as the separator.

    HexDump(HexDump const&) = default;            ///< The same text.
    HexDump& operator=(HexDump const&) = default; ///< Takes over the text.

    /// Puts the colour switch back to what it was at construction.
    ~HexDump() override;

    static std::string raw_data_byte(unsigned char b); ///< The text of HexDump(b).
    static std::string raw_data(unsigned short u);     ///< The text of HexDump(u).

    /// The text of HexDump(v) without white space at its end, or "nil" for no bytes. While colour is in
    /// use the text ends in "\x1b[0m" and keeps its last blank.
    static std::string raw_data(std::vector<unsigned char> const& v);
};

/// \}
} // namespace kestry

#pragma GCC visibility pop

/// Returns s without the white space at its end, as isspace(3) of the process's C locale has it.
///
/// In the global namespace.
///
/// \ingroup hueline_string_dump
[[gnu::visibility("default")]] std::string rtrim(std::string const& s);

#endif
