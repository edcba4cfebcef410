/// \file
/// Colour and cursor control for std::ostream: the stream manipulator interface of libhueline.
///
///     using namespace kestry::Hueline;
///     std::cout << colorize << red << "failed" << normal << '\n';
///
/// On a terminal that line is written with escape sequences; into a pipe, a file or a string stream
/// it is the text alone.
///
/// The gate. Every manipulator that is called gated below, or has a line "Gate refused", first asks one
/// question: may an escape sequence be written to this stream now? It may while all of these hold:
///   - the stream is std::cout, std::cerr or std::clog itself (no other stream, not even one that
///     shares its buffer);
///   - the stdio stream behind it (stdout for std::cout, stderr for the other two) is a terminal;
///   - no-frills mode is off;
///   - the stream has been colorized: its colorize word, 0 at first, is another number.
/// While one of these does not hold, a gated manipulator writes nothing. Each run of the gate records
/// whether a terminal was found, for _isUsingColor() and the destructors of the colour guards;
/// constructing a UseColorMode counts as finding one, constructing a NoColorMode as finding none. The
/// gate leaves errno as it was. A standard stream costs one isatty(3), any other stream no system call.
///
/// The record. Attributes and colours are kept in one record for the whole process. A styling
/// manipulator changes the record and writes all of it again: "\x1b[00m" and then one SGR sequence
/// for each attribute that is on. At load bold is on, so coloured text is bold until thin.
///
/// State is plain process-wide data without locks: one thread at a time.
///
/// This header and hueline_classic.hpp give the name kestry::Hueline two meanings. A program may use
/// both, in different translation units.
#ifdef KESTRY_HUELINE_CLASSIC_HPP
#error "hueline_stream.hpp and hueline_classic.hpp are never included together: use one of them in another source file"
#elif !defined(KESTRY_HUELINE_STREAM_HPP)
#define KESTRY_HUELINE_STREAM_HPP

#include <cstdint>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#if defined(__GLIBCXX__) && !_GLIBCXX_USE_CXX11_ABI
#error "libhueline passes strings of the C++11 layout: compile without _GLIBCXX_USE_CXX11_ABI=0"
#endif

#pragma GCC visibility push(default)

namespace kestry::Hueline {

/// \addtogroup hueline_switches
/// \{

/// Lets os have colour: any other condition of the gate still has to hold.
///
/// Writes  nothing.
/// Gate    not asked.
/// Stream  its colorize word is 1 afterwards.
std::ostream& colorize(std::ostream& os);

/// Takes colour from os. Text that was coloured before keeps its colour on the terminal.
///
/// Writes  nothing.
/// Gate    not asked.
/// Stream  its colorize word is 0 afterwards.
std::ostream& nocolorize(std::ostream& os);

/// Says whether a terminal was recorded last, by the gate or by a colour guard, or a UseColorMode has
/// been constructed and no NoColorMode since; false in no-frills mode.
///
/// It does not tell of one stream: a gated manipulator on any stream counts, and a terminal counts
/// even if its stream was not colorized. color_mode_state asks about one stream.
bool _isUsingColor();

/// Turns no-frills mode on or off: while it is on, no gated manipulator writes anything.
void _setNoFrillsMode(bool on);

/// Says whether no-frills mode is on. It is off at load.
bool _getNoFrillsMode();

/// Reports in words whether os gets colour.
///
/// Writes  " use color mode is ", "on" or "off", " " and std::endl; after "off" also
///         " (you should not be seeing color) " and std::endl. No escape sequence.
/// Gate    asked, only to report its answer.
/// Throws  std::bad_cast where the stream's locale has no std::ctype<char>, as std::endl does.
std::ostream& color_mode_state(std::ostream& os);

/// Reports in words whether no-frills mode is on.
///
/// Writes  " no frills mode is ", "on" or "off", " " and std::endl.
/// Gate    not asked.
/// Throws  std::bad_cast where the stream's locale has no std::ctype<char>, as std::endl does.
std::ostream& frills_mode_state(std::ostream& os);

/// Colorizes std::cout for a scope.
///
/// The destructor takes colour away again, whether or not std::cout was colorized before, unless since
/// the constructor a gated manipulator has found no terminal or a NoColorMode was constructed, and
/// nothing has recorded a terminal after that. _isUsingColor() stays true after the scope, except in
/// no-frills mode, until a NoColorMode is constructed.
class UseColorMode {
public:
    /// Colorizes std::cout, and makes _isUsingColor() true unless in no-frills mode.
    UseColorMode();
    /// Takes colour from std::cout if a terminal was recorded last; otherwise does nothing.
    ~UseColorMode();
    UseColorMode(UseColorMode const&) = delete;
    UseColorMode& operator=(UseColorMode const&) = delete;
};

/// Takes colour from std::cout for a scope.
///
/// The destructor colorizes std::cout, whether or not it was colorized before, if what was recorded
/// last since the constructor is a terminal: by a gated manipulator, or by constructing a
/// UseColorMode. A scope in which neither ran leaves it without colour.
class NoColorMode {
public:
    /// Takes colour from std::cout and makes _isUsingColor() false.
    NoColorMode();
    /// Colorizes std::cout if a terminal was recorded last; otherwise does nothing.
    ~NoColorMode();
    NoColorMode(NoColorMode const&) = delete;
    NoColorMode& operator=(NoColorMode const&) = delete;
};

/// Turns no-frills mode on for a scope and puts back what was before.
class NoFrillsMode {
public:
    /// Remembers the mode and turns it on.
    NoFrillsMode();
    /// Puts back the mode that the constructor saw.
    ~NoFrillsMode();
    NoFrillsMode(NoFrillsMode const&) = delete;
    NoFrillsMode& operator=(NoFrillsMode const&) = delete;

private:
    bool saved;
};

/// Turns no-frills mode off for a scope and puts back what was before.
class UseFrillsMode {
public:
    /// Remembers the mode and turns it off.
    UseFrillsMode();
    /// Puts back the mode that the constructor saw.
    ~UseFrillsMode();
    UseFrillsMode(UseFrillsMode const&) = delete;
    UseFrillsMode& operator=(UseFrillsMode const&) = delete;

private:
    bool saved;
};

/// \}

/// \addtogroup hueline_style
/// \{

/// Writes the record: the rendition that all styling manipulators share.
///
/// Writes  "\x1b[00m", then for each attribute that is on "\x1b[1m" bold, "\x1b[2m" dark,
///         "\x1b[3m" italic, "\x1b[4m" underline, "\x1b[5m" blink, "\x1b[7m" reverse, then the
///         foreground and the background sequence (SGR, ECMA-48 8.3.117). Each piece is a formatted
///         insertion of its own. No flush.
/// Gate    refused: writes nothing.
/// Stream  a pending width pads the first piece and is spent: set the width after the colour.
std::ostream& adjust(std::ostream& os);

/// Saves the record for pull. There is one saved record, not a stack.
///
/// The background is not saved: the foreground is kept in both colour slots, so that after pull the
/// background sequence is the foreground sequence that was current at push.
///
/// Writes  nothing.
/// Gate    refused: saves nothing.
/// Throws  std::bad_alloc; nothing is saved then.
std::ostream& push(std::ostream& os);

/// Makes the saved record current. The terminal shows it with the next rendition.
///
/// Before any push that passed the gate, this restores the record as it was at load.
///
/// Writes  nothing.
/// Gate    refused: restores nothing.
/// Throws  std::bad_alloc; the record is unchanged then.
std::ostream& pull(std::ostream& os);

/// Ends all attributes on the terminal and keeps them in the record: the next styling manipulator
/// brings them back. See reset for forgetting them.
///
/// Writes  "\x1b[00m" as a formatted insertion, then what csi::show writes.
/// Gate    refused: writes nothing.
std::ostream& normal(std::ostream& os);

/// Ends all attributes on the terminal and forgets them: bold on, everything else off, no colours.
///
/// Writes  what normal writes.
/// Gate    refused: writes nothing, but the record is cleared all the same.
/// State   the record as at load; the saved record is not touched.
std::ostream& reset(std::ostream& os);

/// \name Weight
/// Change the record, then write it as adjust does.
///
/// Gate    refused: writes nothing, but the record is changed all the same, and it shows in the
///         next rendition on any stream.
/// \{
std::ostream& bold(std::ostream& os);   ///< Bold on: SGR 1. It is on at load.
std::ostream& thin(std::ostream& os);   ///< Bold off.
std::ostream& dark(std::ostream& os);   ///< Faint on: SGR 2.
std::ostream& lite(std::ostream& os);   ///< Faint off. It is off at load.
std::ostream& bright(std::ostream& os); ///< Another name for lite.
/// \}

/// \name Decoration
/// Change the record, then write it as adjust does.
///
/// Gate    refused: writes nothing and changes nothing.
/// \{
std::ostream& italic(std::ostream& os);      ///< Italic on: SGR 3.
std::ostream& noitalic(std::ostream& os);    ///< Italic off.
std::ostream& underline(std::ostream& os);   ///< Underline on: SGR 4.
std::ostream& nounderline(std::ostream& os); ///< Underline off.
std::ostream& blink(std::ostream& os);       ///< Blink on: SGR 5.
std::ostream& noblink(std::ostream& os);     ///< Blink off.
std::ostream& reverse(std::ostream& os);     ///< Foreground and background exchanged: SGR 7.
std::ostream& noreverse(std::ostream& os);   ///< Foreground and background as they are.
/// \}

/// \name Without the record
/// Write their sequence alone, as a formatted insertion, and leave the record as it is: the next
/// rendition starts with "\x1b[00m" and ends them.
///
/// Gate    refused: writes nothing.
/// \{
std::ostream& concealed(std::ostream& os); ///< Concealed: SGR 8, "\x1b[8m".
std::ostream& crossed(std::ostream& os);   ///< Crossed out: SGR 9, "\x1b[9m".
/// \}

/// \}

/// \addtogroup hueline_color
/// \{

/// \name Foreground colours
/// Store the colour in the record, then write the record as adjust does.
///
/// Gate    refused: writes nothing and changes nothing.
/// \{
std::ostream& grey(std::ostream& os);    ///< Foreground black: SGR 30, "\x1b[30m".
std::ostream& red(std::ostream& os);     ///< Foreground red: SGR 31, "\x1b[31m".
std::ostream& green(std::ostream& os);   ///< Foreground green: SGR 32, "\x1b[32m".
std::ostream& yellow(std::ostream& os);  ///< Foreground yellow: SGR 33, "\x1b[33m".
std::ostream& blue(std::ostream& os);    ///< Foreground blue: SGR 34, "\x1b[34m".
std::ostream& magenta(std::ostream& os); ///< Foreground magenta: SGR 35, "\x1b[35m".
std::ostream& cyan(std::ostream& os);    ///< Foreground cyan: SGR 36, "\x1b[36m".
std::ostream& white(std::ostream& os);   ///< Foreground white: SGR 37, "\x1b[37m".
std::ostream& black(std::ostream& os);   ///< Another name for grey.
/// \}

/// \name Background colours
/// Store the colour in the record, then write the record as adjust does.
///
/// Gate    refused: writes nothing and changes nothing.
/// \{
std::ostream& on_grey(std::ostream& os);    ///< Background black: SGR 40, "\x1b[40m".
std::ostream& on_red(std::ostream& os);     ///< Background red: SGR 41, "\x1b[41m".
std::ostream& on_green(std::ostream& os);   ///< Background green: SGR 42, "\x1b[42m".
std::ostream& on_yellow(std::ostream& os);  ///< Background yellow: SGR 43, "\x1b[43m".
std::ostream& on_blue(std::ostream& os);    ///< Background blue: SGR 44, "\x1b[44m".
std::ostream& on_magenta(std::ostream& os); ///< Background magenta: SGR 45, "\x1b[45m".
std::ostream& on_cyan(std::ostream& os);    ///< Background cyan: SGR 46, "\x1b[46m".
std::ostream& on_white(std::ostream& os);   ///< Background white: SGR 47, "\x1b[47m".
std::ostream& on_black(std::ostream& os);   ///< Another name for on_grey.
/// \}

/// Applies one of the eight named colours: 0 grey, 1 red, 2 green, 3 yellow, 4 blue, 5 magenta,
/// 6 cyan, and white for any other number, a negative one included.
///
/// Writes  what the manipulator writes: grey ... white, or on_grey ... on_white when background.
/// Gate    as the manipulator's: refused, writes nothing and changes nothing.
std::ostream& next(std::ostream& os, int index, bool background);

/// Lays a label out as a cell: its first 10 bytes, filled with blanks up to 10 bytes. A label in UTF-8
/// may be cut inside a character.
std::string col(std::string const& name);

/// \}

/// \addtogroup hueline_palette
/// \{

/// \name Palette and true colour
/// Store the sequence in the record, in place of the named colour, then write the record as adjust
/// does. The numbers are plain decimal whatever the stream's number format.
///
/// Gate    refused: writes nothing and changes nothing.
/// Units   0 to 255 on a common terminal; any int is written as it is.
/// Throws  std::bad_alloc; the record is unchanged then.
/// \{

/// A foreground colour of the 256-colour palette: SGR 38;5 (ITU-T T.416).
struct color {
    int code; ///< The palette's index.
};
std::ostream& operator<<(std::ostream& os, color const& c); ///< "\x1b[38;5;" code "m"

/// A background colour of the 256-colour palette: SGR 48;5.
struct on_color {
    int code; ///< The palette's index.
};
std::ostream& operator<<(std::ostream& os, on_color const& c); ///< "\x1b[48;5;" code "m"

/// A 24-bit foreground colour: SGR 38;2 (ITU-T T.416).
struct rgb {
    int r; ///< Red.
    int g; ///< Green.
    int b; ///< Blue.
};
std::ostream& operator<<(std::ostream& os, rgb const& c); ///< "\x1b[38;2;" r ";" g ";" b "m"

/// A 24-bit background colour: SGR 48;2.
struct on_rgb {
    int r; ///< Red.
    int g; ///< Green.
    int b; ///< Blue.
};
std::ostream& operator<<(std::ostream& os, on_rgb const& c); ///< "\x1b[48;2;" r ";" g ";" b "m"

/// \}

/// \}

/// Control sequences of ECMA-48, each named by its mnemonic in lower case.
///
/// Nothing here is checked against a range or flushed. The fixed sequences, all but that of cls, are
/// unformatted output: a pending width stays pending.
namespace csi {
/// \addtogroup hueline_cursor
/// \{

/// Shows the cursor: SM (ECMA-48 8.3.125) of mode 25, without the "?" of the common private mode.
///
/// Writes  "\x1b[25h", unformatted.
/// Gate    refused: writes nothing.
std::ostream& show(std::ostream& os);

/// Asks for a hidden cursor. Common terminals do not hide it: the private mode would be "\x1b[?25l",
/// and "i" is the final byte of MC, media copy (ECMA-48 8.3.82).
///
/// Writes  "\x1b[25i", unformatted.
/// Gate    refused: writes nothing.
std::ostream& hide(std::ostream& os);

std::ostream& cr(std::ostream& os);  ///< Carriage return: "\r", unformatted. Not gated.
std::ostream& lf(std::ostream& os);  ///< Line feed: "\n", unformatted, no flush. Not gated.
std::ostream& cls(std::ostream& os); ///< Erases the display: what csi::ed{2} writes. Gated.
std::ostream& clr(std::ostream& os); ///< Another name for cls.

/// The same function as clr, by reference: both names have one address in every program. If it were
/// declared as a function, compilers would take "&clear == &clr" for false without asking the linker.
inline constexpr std::ostream& (&clear)(std::ostream&) = clr;

/// Asks for the cursor position: DSR (ECMA-48 8.3.35), "\x1b[6n". Gated. The answer arrives as input.
std::ostream& dsr(std::ostream& os);
/// Saves the cursor position: "\x1b[s". Gated. No ECMA-48 function, but widely known.
std::ostream& scp(std::ostream& os);
/// Restores the cursor position: "\x1b[u". Gated. No ECMA-48 function, but widely known.
std::ostream& rcp(std::ostream& os);

/// \name Controls with numbers
/// Each is inserted as a value: csi::cup{3, 7} writes "\x1b[3;7H", csi::el{0} writes "\x1b[0K". The
/// introducer "\x1b[" is unformatted.
///
/// Gate    refused: writes nothing.
/// Stream  the numbers are ordinary int insertions: the stream's base, sign and grouping show in them,
///         and a pending width pads the first and is spent. Insert std::dec first where that matters.
/// \{

/// Erases in the display: ED (ECMA-48 8.3.39).
struct ed {
    int n; ///< 0 from the cursor to the end, 1 from the start to the cursor, 2 all.
};
std::ostream& operator<<(std::ostream& os, ed const& p); ///< "\x1b[" n "J"

/// Erases in the line: EL (8.3.41).
struct el {
    int n; ///< 0 from the cursor to the end, 1 from the start to the cursor, 2 all.
};
std::ostream& operator<<(std::ostream& os, el const& p); ///< "\x1b[" n "K"

/// Moves the cursor up: CUU (8.3.22).
struct cuu {
    int n; ///< Cells.
};
std::ostream& operator<<(std::ostream& os, cuu const& p); ///< "\x1b[" n "A"

/// Moves the cursor down: CUD (8.3.19).
struct cud {
    int n; ///< Cells.
};
std::ostream& operator<<(std::ostream& os, cud const& p); ///< "\x1b[" n "B"

/// Moves the cursor forward, to the right: CUF (8.3.20).
struct cuf {
    int n; ///< Cells.
};
std::ostream& operator<<(std::ostream& os, cuf const& p); ///< "\x1b[" n "C"

/// Moves the cursor back, to the left: CUB (8.3.18).
struct cub {
    int n; ///< Cells.
};
std::ostream& operator<<(std::ostream& os, cub const& p); ///< "\x1b[" n "D"

/// Moves to the start of a line below: CNL (8.3.12).
struct cnl {
    int n; ///< Lines.
};
std::ostream& operator<<(std::ostream& os, cnl const& p); ///< "\x1b[" n "E"

/// Moves to the start of a line above: CPL (8.3.13).
struct cpl {
    int n; ///< Lines.
};
std::ostream& operator<<(std::ostream& os, cpl const& p); ///< "\x1b[" n "F"

/// Moves within the line: CHA (8.3.9).
struct cha {
    int n; ///< The column, counted from 1.
};
std::ostream& operator<<(std::ostream& os, cha const& p); ///< "\x1b[" n "G"

/// Scrolls up: SU (8.3.147).
struct su {
    int n; ///< Lines.
};
std::ostream& operator<<(std::ostream& os, su const& p); ///< "\x1b[" n "S"

/// Scrolls down: SD (8.3.113).
struct sd {
    int n; ///< Lines.
};
std::ostream& operator<<(std::ostream& os, sd const& p); ///< "\x1b[" n "T"

/// Selects one rendition without touching the record: SGR (8.3.117).
struct sgr {
    int n; ///< 31 for red, 91 for bright red, 0 for the default rendition, ...
};
std::ostream& operator<<(std::ostream& os, sgr const& p); ///< "\x1b[" n "m"

/// Moves the cursor: CUP (8.3.21).
struct cup {
    int row; ///< Counted from 1.
    int col; ///< Counted from 1.
};
std::ostream& operator<<(std::ostream& os, cup const& p); ///< "\x1b[" row ";" col "H"

/// Moves the cursor, as a format effector: HVP (8.3.63).
struct hvp {
    int row; ///< Counted from 1.
    int col; ///< Counted from 1.
};
std::ostream& operator<<(std::ostream& os, hvp const& p); ///< "\x1b[" row ";" col "f"

/// \}

/// Waits: a busy loop on the system clock, which occupies a processor until it ends.
struct delay {
    int ms; ///< Milliseconds of wall-clock time: setting the clock shortens or lengthens the wait. 0 or less is none.
};
/// Waits where the gate passes, so that an animation costs no time where nobody sees it.
///
/// Writes  nothing, and does not flush.
/// Gate    refused: does not wait.
std::ostream& operator<<(std::ostream& os, delay const& p);

/// \}

/// \addtogroup hueline_palette
/// \{

/// \name Sequences as strings
/// For callers who build their text themselves: no stream, no gate, no record.
///
/// Units   any int is written as it is, in plain decimal.
/// Throws  std::bad_alloc.
/// \{
std::string color(int n);                ///< One SGR code, not a palette colour: "\x1b[" n "m".
std::string rgb(int r, int g, int b);    ///< 24-bit foreground: "\x1b[38;2;" r ";" g ";" b "m".
std::string on_rgb(int r, int g, int b); ///< 24-bit background: "\x1b[48;2;" r ";" g ";" b "m".
/// \}

/// \}
} // namespace csi

/// \addtogroup hueline_indicators
/// \{

/// \name Activity indicators
/// Draw one frame where the cursor is: the caller returns the cursor (csi::cr), flushes and waits
/// (csi::delay). All texts are unformatted output, without a flush; a frame without any text is one empty
/// insertion.
///
/// Gate    not asked: a pipe receives the same text. The texts may carry sequences of csi::color.
/// \{

/// One frame of a spinner.
struct spinner {
    std::string const& frames; ///< One frame a byte, "|/-\\" for example: ASCII only. Must outlive the insertion.
    std::string label;         ///< Written before the frame.
};
/// Writes label and the next frame.
///
/// State   one counter turns every spinner of the process, and is advanced before the frame is
///         taken: the first frame drawn is the one at index 1. An empty frames draws no frame and
///         still advances the counter.
std::ostream& operator<<(std::ostream& os, spinner const& s);

/// One frame of a bar of cells.
struct status_line {
    int position;            ///< The current step.
    int start;               ///< The first step.
    int end;                 ///< One past the last cell.
    std::string const& done; ///< A cell of finished work; must outlive the insertion.
    std::string todo;        ///< A cell of work still to do.
    std::string prefix;      ///< Written first.
    std::string suffix;      ///< Written last.
    std::string frames;      ///< The spinner at the head of the bar.
    std::string spin_label;  ///< Written before the spinner's frame.
};
/// Writes prefix, the cells and suffix.
///
/// At start and before it there are only todo cells, end - position of them. Between start and end:
/// position - start done cells, a spinner frame, and todo cells up to end. From end on: position -
/// start done cells, which may be more than the bar is wide.
///
/// State   a frame between start and end advances the spinners' counter.
std::ostream& operator<<(std::ostream& os, status_line const& s);

/// One frame of a percentage.
struct progress_meter {
    int position;             ///< The current step.
    int start;                ///< The first step.
    int end;                  ///< The last step.
    std::string const& label; ///< Written second; must outlive the insertion.
    std::string lead;         ///< Written first.
    std::string after;        ///< Written last, after the percent sign.
    std::string before;       ///< Written before the number.
};
/// Writes lead, label, a blank, before, the percentage, "%" and after.
///
/// The percentage is position / (end - start) * 100 in float, cut towards zero. The position itself is
/// divided, not its distance from start: 15 between 10 and 20 is 150. What is no int (end equal to
/// start, or huge numbers) is cut to the nearest int, and 0 / 0 is 0.
///
/// Stream  decimal afterwards. The number is an ordinary int insertion: a pending width pads it.
std::ostream& operator<<(std::ostream& os, progress_meter const& m);

/// \}

/// \}
} // namespace kestry::Hueline

namespace kestry::detail {

/// What a theme type that decorates a text holds.
struct ThemedText {
    ThemedText(std::string given) : text(std::move(given)) {} ///< Decorates the text given.
    std::string text;                                         ///< The text.
};

/// What a theme type that decorates a byte holds.
struct ThemedByte {
    ThemedByte(std::uint8_t given) : byte(given) {} ///< Decorates the byte given.
    std::uint8_t byte;                              ///< The byte.
};

} // namespace kestry::detail

/// Texts by their role in a user interface: std::cout << alert("no such device") << reset.
///
/// The decoration is that of the named manipulators, with their gate and their record. Only
/// commandLine ends its decoration; after alert, cursor and name the record stays bold and dark.
namespace kestry::Hueline::ColorTheme {
/// \addtogroup hueline_themes
/// \{

/// \name Texts by role
/// Apply the manipulators shown, write the text as a formatted insertion, and apply those after it.
///
/// Stream  a pending width pads the text where the gate refuses, and the first sequence where it lets
///         it through: pad the text itself instead.
/// \{

// clang-format off
/// The title of a program.
struct app_title : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, app_title const& t); ///< green, text

/// What needs attention.
struct alert : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, alert const& t); ///< red, bold, text, dark

/// What is good to know.
struct info : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, info const& t); ///< yellow, text

/// Ordinary text.
struct default_text : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, default_text const& t); ///< cyan, text

/// A separator between items.
struct seperator : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, seperator const& t); ///< white, text

/// Help text.
struct help : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, help const& t); ///< blue, text

/// What asks for input.
struct prompt : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, prompt const& t); ///< magenta, text

/// A version.
struct version : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, version const& t); ///< white, text

/// A mark of the place.
struct cursor : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, cursor const& t); ///< cyan, bold, text, dark

/// A command as typed.
struct commandLine : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, commandLine const& t); ///< white, text, reset

/// The name of a thing.
struct name : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, name const& t); ///< white, bold, text, dark
// clang-format on

/// A path, given as text or as a number.
struct path {
    path(std::string given) : is_text(true), text(std::move(given)), number(0) {} ///< A path given as text.
    path(std::uint32_t given) : is_text(false), number(given) {}                  ///< A path given as a number.
    bool is_text;                                                                 ///< Whether the path is text.
    std::string text;                                                             ///< The path when it is text.
    std::uint32_t number;                                                         ///< The path when it is a number.
};
/// cyan, then the text, or the number in decimal.
///
/// Stream  decimal afterwards, if the path is a number.
std::ostream& operator<<(std::ostream& os, path const& p);
/// \}

/// \name Stretches by role
/// Apply one colour and write nothing else: what follows has the role.
/// \{
std::ostream& _default_text(std::ostream& os); ///< green
std::ostream& _help(std::ostream& os);         ///< yellow
std::ostream& _commandLine(std::ostream& os);  ///< cyan
std::ostream& _status(std::ostream& os);       ///< magenta
/// \}

/// \}
} // namespace kestry::Hueline::ColorTheme

/// The fields of a request or response frame, dumped in hexadecimal.
///
/// The decoration is that of the named manipulators, with their gate and their record. None of them
/// ends its decoration.
namespace kestry::Hueline::DataTheme {
/// \addtogroup hueline_themes
/// \{

/// \name Fields of a frame
/// Apply the manipulators shown, then write what HexDump makes of the field: a text is cut after 19
/// bytes unless HexDump::_longDumps.
///
/// Stream  a pending width pads the first dump where the gate refuses, and the first sequence where it
///         lets it through.
/// \{

// clang-format off
/// The address byte.
struct immediate_destination : detail::ThemedByte { using ThemedByte::ThemedByte; };
std::ostream& operator<<(std::ostream& os, immediate_destination const& b); ///< cyan, byte

/// The count byte.
struct total_count : detail::ThemedByte { using ThemedByte::ThemedByte; };
std::ostream& operator<<(std::ostream& os, total_count const& b); ///< blue, byte

/// The title of a request.
struct request_title : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, request_title const& t); ///< magenta, bold, bytes of the text

/// The title of a response.
struct response_title : detail::ThemedText { using ThemedText::ThemedText; };
std::ostream& operator<<(std::ostream& os, response_title const& t); ///< magenta, dark, bytes of the text
// clang-format on

/// A checksum of one byte or of two.
struct crc {
    crc(std::uint8_t given) : is_wide(false), narrow(given), wide(0) {} ///< A checksum of one byte.
    crc(std::uint16_t given) : is_wide(true), narrow(0), wide(given) {} ///< A checksum of two bytes.
    bool is_wide;                                                       ///< Whether it has two bytes.
    std::uint8_t narrow;                                                ///< The checksum of one byte.
    std::uint16_t wide;                                                 ///< The checksum of two bytes.
};
std::ostream& operator<<(std::ostream& os, crc const& c); ///< green, byte; or high, " ", low, " "
/// \}

/// \}
} // namespace kestry::Hueline::DataTheme

namespace kestry::Hueline {

/// \addtogroup hueline_dump
/// \{

/// A hex dump, rendered when it is constructed: std::cout << HexDump(frame).
///
/// Digits are lower case. No escape sequence, no gate: the text takes the colours that are current
/// on the terminal.
///
/// Throws  std::bad_alloc while the text is built, and nothing else.
class HexDump {
public:
    /// Whether dumps of bytes are written in full. False at load: they are cut after 19 bytes. Read
    /// when a dump is constructed; plain data, assign to it.
    static bool _longDumps;

    HexDump(char b);           ///< Two digits: the byte, taken as unsigned.
    HexDump(unsigned char b);  ///< Two digits.
    HexDump(unsigned short u); ///< "0x" and four digits.
    HexDump(unsigned long w);  ///< At least eight digits, no prefix.

    /// Eight digits and a blank for each word, never cut.
    HexDump(std::vector<unsigned int> const& v);

    /// Two digits and the separator for each byte, the last one included. Unless _longDumps, more
    /// than 19 bytes are cut after the nineteenth, and " ... (N bytes) " follows, N being the size of v.
    HexDump(std::vector<unsigned char> const& v, std::string const& separator);

    HexDump(std::vector<unsigned char> const& v); ///< With a blank as the separator.
    HexDump(std::string const& s);                ///< The bytes of s, with a blank as the separator.

    static std::string raw_data_byte(unsigned char b);                ///< The text of HexDump(b).
    static std::string raw_data(unsigned short u);                    ///< The text of HexDump(u).
    static std::string raw_data(std::vector<unsigned char> const& v); ///< The text of HexDump(v), "nil" for no bytes.

    friend std::ostream& operator<<(std::ostream& os, HexDump const& d);

private:
    std::string _text;
};

/// Writes the dump's text as a std::string is written: a pending width pads it and is spent.
std::ostream& operator<<(std::ostream& os, HexDump const& d);

/// \}
} // namespace kestry::Hueline

/// \addtogroup hueline_dump
/// \{

/// Sets a stream's fill character and width at once: std::cout << myfillandw{'.', 8} << 42.
///
/// In the global namespace.
struct myfillandw {
    char fill; ///< Stays on the stream.
    int width; ///< Characters; spent by the next formatted insertion.
};

/// Sets the fill and the width, and writes nothing.
std::ostream& operator<<(std::ostream& os, myfillandw const& m);

/// \}

namespace kestry::Hueline {

/// \addtogroup hueline_patterns
/// \{

/// One SGR sequence, written in the stream's own format.
struct parameters_template {
    int code; ///< The SGR code.
};

/// Writes one SGR sequence without touching the record.
///
/// Writes  "\x1b[", code and "m", all formatted insertions.
/// Gate    refused: writes nothing.
/// Stream  its number format applies to code; a pending width pads "\x1b[" and is spent.
std::ostream& operator<<(std::ostream& os, parameters_template const& p);

/// \name Templates
/// Write a few fixed lines, each with std::endl.
///
/// Throws  std::bad_cast where a line ends and the stream's locale has no std::ctype<char>, as std::endl
///         does.
/// \{
std::ostream& crossplatform_template(std::ostream& os); ///< Five plain lines. Not gated.
/// "\x1b[00m" and five lines. Not gated: a pipe receives the sequence too.
std::ostream& platformspecific_template(std::ostream& os);
/// Two lines in white on green, which stays in the record. Gated: refused, writes nothing.
std::ostream& colorized_crossplatform_template(std::ostream& os);
/// Two lines in white on green, which stays in the record. Gated: refused, writes nothing.
std::ostream& colorized_platformspecific_template(std::ostream& os);
/// \}

/// \name Test patterns
/// Show what a terminal makes of the library's sequences. All but the last two change the record. Those
/// that print the word "colorize" do colorize their stream. Unless they say otherwise, they write their
/// plain text to a stream that fails the gate.
///
/// Throws  std::bad_cast where a line ends and the stream's locale has no std::ctype<char>, as std::endl
///         does.
/// \{

/// Shows the SGR codes 0 to 108, ten in a row.
///
/// Writes  the rows through printf(3), so to standard output whatever os is. After
///         std::ios_base::sync_with_stdio(false) they may come before or after what os holds.
/// Gate    refused: writes nothing, the rows included.
std::ostream& test_pattern_supported_m_codes(std::ostream& os);

/// Shows that normal keeps the attributes and reset forgets them.
std::ostream& test_pattern_normal_reset(std::ostream& os);

/// Shows the eight colours on each of the eight backgrounds.
std::ostream& test_pattern_matrix(std::ostream& os);

/// Shows colours 0 to 15 of the palette on each other.
std::ostream& test_pattern_256bit(std::ostream& os);

/// Shows the greys of the palette, each by its number in hexadecimal.
///
/// Stream  hexadecimal, without showbase, afterwards.
std::ostream& test_pattern_greyscale(std::ostream& os);

/// Shows the colour cube of the palette in sixteen blocks, the last ones past the palette's end.
std::ostream& test_pattern_rgb(std::ostream& os);

/// Runs a status line from 0 to 49, for 3.75 seconds where the gate passes, without waiting elsewhere.
///
/// The sequences of csi::color in its cells are not gated: a pipe receives them. No line end.
///
/// State   advances the counter of the spinners by 144.
std::ostream& test_pattern_status_line(std::ostream& os);

/// Runs a progress meter from 0 % to 100 %, for 3.75 seconds where the gate passes, without waiting elsewhere.
///
/// The sequences of csi::color in its texts are not gated: a pipe receives them. No line end.
///
/// Stream  decimal afterwards.
std::ostream& test_pattern_progress_line(std::ostream& os);
/// \}

/// \}

/// \addtogroup hueline_banner
/// \{

/// Writes the version tag, "Hueline ver. ", white and the release. No line end. White stays in the
/// record.
std::ostream& build_version_short(std::ostream& os);

/// Writes the banner, then runs the test patterns: the codes, the status line, the progress meter,
/// eight times the matrix in different styles, the greys, the cube and the palette. Takes about 7.5
/// seconds on a colorized terminal; the codes go to standard output whatever os is.
///
/// Gate    refused: the plain text, without the codes and without waiting. The sequences of csi::color
///         in the two indicators, and their "\r", are written all the same.
/// State   on a colorized terminal the record that was current before, as push and pull keep it: the
///         background becomes the foreground, and what was pushed before is lost. On a terminal that
///         was not colorized, what an earlier push saved, or the record as at load: the patterns
///         colorize it on the way. On a stream that fails the gate nothing is restored: thin and
///         dark, without colours.
/// Stream  hexadecimal afterwards, and colorized.
/// Throws  std::bad_cast where the stream's locale has no std::ctype<char>, as std::endl does.
std::ostream& build_version(std::ostream& os);

/// \}
} // namespace kestry::Hueline

#pragma GCC visibility pop

#endif
