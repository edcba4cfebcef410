#include "kestry/hueline_stream.hpp"

#include "console.hpp"
#include "tour.hpp"
#include "tour_layout.hpp"
#include "tour_parts.hpp"
#include "tour_stage.hpp"

#include <kestry/kit/policy.hpp>
#include <kestry/kit/progress.hpp>
#include <kestry/kit/style.hpp>
#include <kestry/kit/text.hpp>

#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstddef>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <langinfo.h>

namespace demo {

namespace {

namespace csi = kestry::Hueline::csi;
namespace kit = kestry::kit;
namespace progress = kestry::kit::progress;
using std::cout;

// ---------------------------------------------------------------------------------------------
// The parts
// ---------------------------------------------------------------------------------------------

void live_bars();

struct Part {
    std::string_view title;
    std::string_view says;
    std::string_view function; // whose body is shown
    void (*draw)();
    int moving_rows; // that it takes while it moves; 0 for one that does not
};

// clang-format off
Part const parts[] = {
    {"Colours and attributes", "Manipulators of std::cout: sequences on a terminal, nothing in a pipe.",
     "named_colors", tour_parts::named_colors, 0},
    {"24-bit colours", "Any of 16 million colours, for the text and for its ground.",
     "shades", tour_parts::shades, 0},
    {"Messages by role", "Say what a text is, and a theme gives it its colour.",
     "roles", tour_parts::roles, 0},
    {"Frames in hexadecimal", "The fields of a request and a response, each in its colour.",
     "frames", tour_parts::frames, 0},
    {"A spinner", "For work of unknown length: each insertion draws the next frame.",
     "spinning", tour_parts::spinning, 1},
    {"A status line and a meter", "For work of known length: cells that fill, and a percentage.",
     "filling", tour_parts::filling, 1},
    {"Cursor control", "The controls of ECMA-48, each by its name: cub is cursor back.",
     "cursor_control", tour_parts::cursor_control, 3},
    {"The string interface", "For text that is built first and written later: one switch, no stream.",
     "strings", tour_parts::strings, 0},
    {"The kit: styles", "A style is a value: it ends itself, nests, and fits the terminal's colours.",
     "styles", tour_parts::styles, 0},
    {"The kit: text from elsewhere", "Names that hide sequences, made visible and cut to columns.",
     "untrusted_names", tour_parts::untrusted_names, 0},
    {"The kit: hex view", "Bytes as xxd, hexdump -C and od print them, a colour for each kind.",
     "hex_view", tour_parts::hex_view, 0},
    {"The kit: live bars", "Moved on by any thread, with lines above them, and tidy however they end.",
     "live_bars", live_bars, 5},
};
// clang-format on

struct Way {
    std::string_view where;
    std::string_view what;
};

// clang-format off
Way constexpr ways_on[] = {
    {"README.md",           "build against it"},
    {"docs/gallery.md",     "pictures and code"},
    {"examples/",           "programs to copy"},
    {"man 7 hueline",       "the manual"},
    {"hueline-demo --list", "test patterns"},
};
// clang-format on

// ---------------------------------------------------------------------------------------------
// The tour
// ---------------------------------------------------------------------------------------------

// Leaves a part: a person wants to see something else.
struct Interruption {
    Wish wish;
};

// The keys, where a person is at them.
Keys* keys_at_hand = nullptr;

void heed_keys(int milliseconds)
{
    Wish const wish = keys_at_hand != nullptr ? keys_at_hand->wait(milliseconds) : Wish::nothing;
    if (wish != Wish::nothing) {
        throw Interruption{wish};
    }
}

// How the tour shows itself. One for the process, as its terminal is.
struct Showing {
    bool colored = false;
    bool moving = false;      // on a terminal that has colour
    std::size_t columns = 80; // that are used
    std::size_t rows = 24;
    std::size_t margin = 2;

    std::size_t width() const { return columns - 2 * margin - (margin == 0 ? 1 : 0); } // the last column stays free
};
Showing now;
std::shared_ptr<BarsInText> const bars_in_text = std::make_shared<BarsInText>();
std::chrono::milliseconds constexpr time_of_block{70};

void measure()
{
    std::size_t constexpr narrowest = 20;
    std::size_t constexpr narrow = 60;
    std::size_t constexpr widest = 80;
    Extent const size = output_is_terminal() ? output_size() : Extent{};
    now.columns = std::clamp(static_cast<std::size_t>(size.columns), narrowest, widest);
    now.rows = static_cast<std::size_t>(size.rows);
    now.margin = now.columns < narrow ? 0 : 2;
}

bool locale_is_utf8()
{
    locale_t const environment = ::newlocale(LC_CTYPE_MASK, "", nullptr);
    if (environment == nullptr) {
        return false;
    }
    bool const is = std::string_view(::nl_langinfo_l(CODESET, environment)) == "UTF-8";
    ::freelocale(environment);
    return is;
}

// What does not fit would leave rows that nobody takes away.
bool moves(Part const& part)
{
    std::size_t constexpr columns_needed = 34;
    return now.moving && part.moving_rows > 0 && now.width() >= columns_needed;
}

bool bars_move() { return moves(parts[std::size(parts) - 1]); }

void live_bars()
{
    if (bars_move()) {
        tour_parts::live_bars({.shown = progress::mode::live,
                               .target = std::make_shared<BarsOnScreen>(now.margin),
                               .ascii = !locale_is_utf8()});
    } else {
        tour_parts::live_bars({.shown = progress::mode::plain,
                               .drawn_by = progress::drawing::caller,
                               .target = bars_in_text,
                               .color = now.colored});
    }
}

// What a part writes, in rows.
Lines result_of(Part const& part)
{
    Capture const captured;
    part.draw();
    std::string const& text = captured.text();
    Lines rows = last_states(now.colored ? text : kit::strip_escapes(text));
    for (std::string& row : rows) {
        row = kit::truncate(row, now.width(), "");
    }
    return rows;
}

struct Body {
    Lines code;   // or, where there is room, both beside each other
    Lines result; // Of what moves none: it writes itself, later.
};

Body body_of(Part const& part)
{
    std::size_t constexpr gap = 4;
    Lines const code = body_of_function(tour_source(), part.function);
    if (moves(part)) {
        return {folded_code(code, now.width()), {}};
    }
    Lines const result = result_of(part);
    std::size_t const column = widest(code) + gap;
    if (column + widest(result) <= now.width()) {
        return {beside(code, result, column), {}};
    }
    return {folded_code(code, now.width()), result};
}

std::string title_of(std::size_t index)
{
    std::string const count = std::to_string(index + 1) + " of " + std::to_string(std::size(parts));
    std::ostringstream title;
    kit::set_depth(title, kit::depth_of(cout));
    std::string_view const text = parts[index].title;
    std::size_t const room = now.width() - std::min(now.width(), text.size() + count.size());
    title << kit::styled(text, kit::bold | kit::fg(kit::cyan)) << std::string(std::max<std::size_t>(room, 1), ' ')
          << kit::styled(count, kit::faint);
    return kit::truncate(title.str(), now.width(), "");
}

// Lets what stands on the screen leave it at the top, where a person finds it again.
void begin_screen()
{
    if (now.moving && keys_at_hand != nullptr) {
        cout << csi::cup{static_cast<int>(now.rows), 1} << std::string(now.rows, '\n') << csi::cup{1, 1};
    }
}

void write_screen(Lines const& rows)
{
    std::string screen;
    {
        Capture const captured;
        begin_screen();
        screen = captured.text();
    }
    std::string const blanks(now.margin, ' ');
    for (std::string const& row : rows) {
        screen += blanks + row;
        screen.erase(screen.find_last_not_of(' ') + 1);
        screen += '\n';
    }
    cout << screen << std::flush;
}

// Waits for a key below what is shown, and takes the line away again that says so. Where nobody is at the keys, it goes on.
Wish prompt()
{
    if (keys_at_hand == nullptr) {
        cout << '\n';
        return Wish::next;
    }
    std::string const text = std::string(now.margin, ' ') + kit::truncate("any key goes on, q ends", now.width(), "");
    cout << '\n' << kit::styled(text, kit::faint) << std::flush;
    Wish const wish = keys_at_hand->wait(-1);
    cout << '\r' << std::string(text.size(), ' ') << '\r' << std::flush;
    return wish;
}

// Runs a part that moves, where it stands.
void run(Part const& part)
{
    cout.flush();
    live_rows_stand(true);
    try {
        LiveCapture const captured(now.margin, [] { heed_keys(0); });
        part.draw();
        cout.flush();
    } catch (Interruption const&) {
        cout.clear();
        live_rows_stand(false);
        throw;
    }
    live_rows_stand(false);
}

// How many rows there are below the heading, which explains the part on the first screen alone.
struct Room {
    std::size_t first;
    std::size_t further;
};

void append(std::vector<Lines>& screens, Lines const& rows, Room const& room)
{
    std::size_t left = 0;
    for (std::string const& row : rows) {
        if (left == 0) {
            left = screens.empty() ? room.first : room.further;
            screens.emplace_back();
        }
        screens.back().push_back(row);
        --left;
    }
}

// The screens of a part: one, if there is room for all of it; else first what it writes, and then the code.
std::vector<Lines> screens_of(Part const& part, Room const& room)
{
    Body const body = body_of(part);
    Lines whole = body.code;
    if (moves(part) || !body.result.empty()) {
        whole.emplace_back();
    }
    whole.insert(whole.end(), body.result.begin(), body.result.end());
    std::size_t const moving = moves(part) ? static_cast<std::size_t>(part.moving_rows) : 0;
    if (whole.size() + moving <= room.first) {
        return {whole};
    }
    std::vector<Lines> screens(moving > 0 ? 1 : 0);
    append(screens, body.result, room);
    append(screens, body.code, room);
    return screens;
}

Room room_below(Lines const& title, Lines const& explanation)
{
    if (keys_at_hand == nullptr) {
        return {std::string::npos, std::string::npos}; // it may scroll
    }
    std::size_t constexpr others = 3; // a blank row below the heading, and two of the prompt
    std::size_t const further =
        std::max(now.rows, title.size() + explanation.size() + others + 1) - title.size() - others;
    return {further - explanation.size(), further};
}

// Shows a part. What moves does so on the first of its screens.
Wish show(std::size_t index)
{
    Part const& part = parts[index];
    Lines const title = {title_of(index)};
    Lines const explanation = folded(part.says, now.width(), 0);
    std::vector<Lines> const screens = screens_of(part, room_below(title, explanation));
    for (std::size_t i = 0; i < screens.size(); ++i) {
        Lines rows = title;
        rows.insert(rows.end(), explanation.begin(), i == 0 ? explanation.end() : explanation.begin());
        rows.emplace_back();
        rows.insert(rows.end(), screens[i].begin(), screens[i].end());
        write_screen(rows);
        if (i == 0 && moves(part)) {
            run(part);
        }
        if (Wish const wish = prompt(); wish != Wish::next) {
            return wish;
        }
    }
    return Wish::next;
}

void show_farewell()
{
    std::size_t constexpr column = 21;
    Lines rows = {"That is Hueline. From here:", ""};
    for (Way const& way : ways_on) {
        rows.push_back(kit::pad(way.where, column) + std::string(way.what));
    }
    write_screen(rows);
}

void show_all()
{
    std::size_t index = 0;
    while (index < std::size(parts)) {
        measure();
        Wish wish = Wish::nothing;
        try {
            wish = show(index);
        } catch (Interruption const& interruption) {
            wish = interruption.wish;
        }
        if (wish == Wish::end) {
            return;
        }
        index += wish == Wish::again ? 0 : 1;
    }
    show_farewell();
}

} // namespace

std::uint64_t read_block()
{
    if (!bars_move()) {
        bars_in_text->time += time_of_block;
    } else if (keys_at_hand != nullptr) {
        heed_keys(static_cast<int>(time_of_block.count()));
    } else {
        std::this_thread::sleep_for(time_of_block);
    }
    return 1 << 20;
}

std::ostream& tour(std::ostream& os)
{
    now.colored = kit::depth_of(os) != kit::color_depth::none && !kestry::Hueline::_getNoFrillsMode();
    now.moving = now.colored && output_is_terminal();
    kit::color_depth const depth = now.colored ? kit::depth_of(os) : kit::color_depth::none;
    kit::set_depth(os, depth);
    kit::use_in_strings({.depth = depth});

    std::optional<Keys> keys;
    if (Keys::are_at_hand()) {
        keys.emplace();
    }
    keys_at_hand = keys ? &*keys : nullptr;
    show_all();
    keys_at_hand = nullptr;
    return os;
}

} // namespace demo
