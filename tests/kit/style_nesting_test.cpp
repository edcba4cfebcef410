// Nested styles, read back as a terminal reads them: each character looks as its styles say, lines end plain, and what
// was in effect before is so again afterwards.
#include <kestry/kit/style.hpp>
#include <kestry/kit/text.hpp>

#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::kit;

struct Pen {
    color foreground = {};
    color background = {};
    unsigned attributes = 0;

    bool operator==(Pen const&) const = default;
};

Pen under(Pen const& around, style const& look)
{
    auto const over = [](color const& c, color const& before) {
        return c.kind == color_kind::none ? before : c.kind == color_kind::standard ? color{} : c;
    };
    return {over(look.foreground, around.foreground), over(look.background, around.background),
            around.attributes | look.attributes};
}

std::vector<int> numbers(std::string_view parameters)
{
    std::vector<int> all(1);
    for (char const c : parameters) {
        if (c == ';') {
            all.push_back(0);
        } else {
            all.back() = all.back() * 10 + (c - '0');
        }
    }
    return all;
}

// What an SGR sequence makes of a pen, if its ends lead back to what is around.
void select(std::string_view parameters, Pen& pen, Pen const& around, color_depth depth)
{
    std::vector<int> const n = numbers(parameters);
    auto const keep = [&](unsigned bits) { pen.attributes = (pen.attributes & ~bits) | (around.attributes & bits); };
    for (std::size_t i = 0; i < n.size(); ++i) {
        auto const named = [](int number) { return color{color_kind::named, static_cast<std::uint8_t>(number)}; };
        auto const more = [&] {
            bool const is_palette = n.at(i + 1) == 5;
            color const c = is_palette ? palette(n.at(i + 2)) : rgb(n.at(i + 2), n.at(i + 3), n.at(i + 4));
            i += is_palette ? 2 : 4;
            return reduced(c, depth);
        };
        int const code = n[i];
        auto const bit = [](int attribute) { return 1U << (attribute - (attribute < 6 ? 1 : 2)); };
        if (code == 0) {
            pen = around;
        } else if (code <= 9 && code != 6) {
            pen.attributes |= bit(code);
        } else if (code == 22) {
            keep(bit(1) | bit(2));
        } else if (code >= 23 && code <= 29 && code != 26) {
            keep(bit(code - 20));
        } else if (code == 38 || code == 48) {
            (code == 38 ? pen.foreground : pen.background) = more();
        } else if (code == 39) {
            pen.foreground = around.foreground;
        } else if (code == 49) {
            pen.background = around.background;
        } else if (code >= 30 && code <= 47) {
            (code < 40 ? pen.foreground : pen.background) = named(code % 10);
        } else if (code >= 90 && code <= 107 && code % 10 < 8) {
            (code < 100 ? pen.foreground : pen.background) = named(code % 10 + 8);
        } else {
            ADD_FAILURE() << "SGR " << code;
        }
    }
}

struct Written {
    char character;
    Pen pen;

    bool operator==(Written const&) const = default;
};

// Calls on_character(c) and on_sequence(parameters) for all of a text.
template <class OnCharacter, class OnSequence>
void read(std::string_view bytes, OnCharacter on_character, OnSequence on_sequence)
{
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        if (bytes[at] != '\x1b') {
            on_character(bytes[at]);
            continue;
        }
        std::size_t const end = bytes.find('m', at);
        ASSERT_EQ(bytes.substr(at, 2), "\x1b[");
        ASSERT_NE(end, std::string_view::npos);
        on_sequence(bytes.substr(at + 2, end - at - 2));
        at = end;
    }
}

bool is_line_end(char c) { return c == '\r' || c == '\n'; }

struct Shown {
    std::vector<Written> characters; // without the ends of lines
    Pen pen;
};

Shown show(std::string_view bytes, Pen const& at_start)
{
    Shown shown;
    shown.pen = at_start;
    std::size_t parameters_before = 0; // of a sequence right before
    auto const on_character = [&](char c) {
        parameters_before = 0;
        if (is_line_end(c)) {
            EXPECT_EQ(shown.pen, Pen{}) << readable(bytes);
        } else {
            shown.characters.push_back({c, shown.pen});
        }
    };
    auto const on_sequence = [&](std::string_view parameters) {
        Pen const before = shown.pen;
        select(parameters, shown.pen, {}, color_depth::truecolor);
        EXPECT_NE(shown.pen, before) << "a sequence without effect in " << readable(bytes);
        std::size_t const count = numbers(parameters).size();
        EXPECT_LE(count, 16U) << readable(bytes);
        EXPECT_TRUE(parameters_before == 0 || parameters_before + count > 16) << readable(bytes);
        parameters_before = count;
    };
    read(bytes, on_character, on_sequence);
    return shown;
}

color_depth const depths[] = {color_depth::none, color_depth::ansi16, color_depth::ansi256, color_depth::truecolor};

style const every = bold | faint | italic | underline | blink | reverse | concealed | crossed_out;
// clang-format off
style const looks[] = {
    style{}, bold, faint, italic, underline, blink, reverse, concealed, crossed_out, every,
    fg(red), fg(bright_blue), fg(palette(99)), fg(rgb(1, 200, 3)), fg(default_color), fg(green) | bold,
    bg(white), bg(rgb(100, 2, 3)), bg(default_color),
    fg(black) | bg(palette(20)) | every, fg(rgb(9, 9, 200)) | bg(bright_yellow) | faint | underline,
};
// clang-format on

struct Tree {
    style look;
    std::string text; // of a leaf
    std::vector<Tree> children;
};

// Inserts the children of a tree, each as a program would: styled by itself.
struct Children {
    Tree const& of;

    friend std::ostream& operator<<(std::ostream& os, Children const& children)
    {
        for (Tree const& child : children.of.children) {
            if (child.children.empty()) {
                os << child.text;
            } else if (child.children.size() == 2) {
                os << styled(child.look, Children{{child.look, {}, {child.children[0]}}},
                             Children{{child.look, {}, {child.children[1]}}});
            } else {
                os << styled(Children{child}, child.look);
            }
        }
        return os;
    }
};

class Random {
public:
    explicit Random(unsigned seed) : engine(seed) {}

    std::size_t below(std::size_t n) { return engine() % n; }

    style look() { return looks[below(std::size(looks))] | looks[below(std::size(looks))]; }

    std::string text()
    {
        static char const* const parts[] = {
            "a",          "b c",       "",         "word",     "d\ne",          "\n",
            "f\r\n",      "\x1b[1m",   "\x1b[22m", "\x1b[31m", "\x1b[39m",      "\x1b[m",
            "\x1b[0;3m",  "\x1b[23m",  "\x1b[4m",  "\x1b[24m", "\x1b[48;5;20m", "\x1b[49m",
            "\x1b[94;1m", "\x1b[2;7m", "\x1b[27m", "\x1b[9m",  "\x1b[29m",      "\x1b[38;2;1;200;3m"};
        std::string made;
        for (std::size_t n = below(5); n != 0; --n) {
            made += parts[below(std::size(parts))];
        }
        return made;
    }

    Tree tree(int levels)
    {
        Tree made{look(), {}, {}};
        for (std::size_t n = 1 + below(3); n != 0; --n) {
            if (levels == 0 || below(2) == 0) {
                made.children.push_back({{}, text(), {}});
            } else {
                made.children.push_back(tree(levels - 1));
            }
        }
        return made;
    }

private:
    std::mt19937 engine;
};

// What a person should see of a tree.
void expect(Tree const& tree, Pen const& outside, color_depth depth, Shown& expected, std::string& plain)
{
    Pen const around = under(outside, reduced(tree.look, depth));
    Pen pen = around;
    for (Tree const& child : tree.children) {
        if (!child.children.empty()) {
            expect(child, pen, depth, expected, plain);
            continue;
        }
        auto const on_character = [&](char c) {
            plain += c;
            if (!is_line_end(c)) {
                expected.characters.push_back({c, pen});
            }
        };
        auto const on_sequence = [&](std::string_view parameters) {
            if (depth != color_depth::none) {
                select(parameters, pen, around, depth);
            }
        };
        read(child.text, on_character, on_sequence);
    }
}

struct Sample {
    std::string bytes;
    Shown expected;
    std::string plain;
    Pen around;
};

Sample sample(unsigned seed)
{
    Random random{seed};
    color_depth const depth = depths[random.below(std::size(depths))];
    style const around = random.below(3) == 0 ? random.look() : style{};
    Tree const tree = random.tree(4);

    std::ostringstream os;
    set_depth(os, depth);
    set_style(os, around);
    os << styled(Children{tree}, tree.look);

    Sample made;
    made.bytes = os.str();
    made.around = under({}, reduced(around, depth));
    expect(tree, made.around, depth, made.expected, made.plain);
    return made;
}

TEST(Nestings, AtRandomLookAsTheirStylesSay)
{
    for (unsigned seed = 0; seed < 3000; ++seed) {
        Sample const made = sample(seed);
        Shown const shown = show(made.bytes, made.around);
        ASSERT_EQ(shown.characters, made.expected.characters) << seed << ": " << readable(made.bytes);
        ASSERT_EQ(shown.pen, made.around) << seed << ": " << readable(made.bytes);
        ASSERT_EQ(strip_escapes(made.bytes), made.plain) << seed;
    }
}

TEST(AnyBytes, AreStrippedAtNoDepthAsTextIs)
{
    std::mt19937 engine{7};
    std::string_view const likely = "\x1b\x1b\x1b[[]]PmmHK0123;;:?\\\a\n\r\x18\xc2\x9b\x9d\x9c\x85\xe2\x82\xac ab";
    for (int i = 0; i < 20'000; ++i) {
        std::string bytes;
        for (std::size_t n = engine() % 20; n != 0; --n) {
            bytes += engine() % 8 == 0 ? static_cast<char>(engine()) : likely[engine() % likely.size()];
        }
        std::string const plain = strip_escapes(bytes);
        ASSERT_EQ(readable(to_string(styled(bytes, bold), color_depth::none)), readable(plain)) << readable(bytes);
        if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
            // Otherwise bytes that a sequence kept apart could become one character.
            ASSERT_EQ(readable(strip_escapes(to_string(styled(bytes, bold)))), readable(plain)) << readable(bytes);
        }

        std::size_t const cut = engine() % (bytes.size() + 1);
        auto const pieces = styled(bold, std::string_view{bytes}.substr(0, cut), std::string_view{bytes}.substr(cut));
        ASSERT_EQ(readable(to_string(pieces)), readable(to_string(styled(bytes, bold)))) << readable(bytes);
    }
}

} // namespace
