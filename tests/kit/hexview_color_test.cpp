#include <kestry/kit/hexview.hpp>

#include <kestry/kit/text.hpp>

#include "kit/hexview.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace kestry::kit;
using namespace hueline::test;
using enum hex_layout;
using enum hex_offsets;
using namespace std::string_view_literals;

std::string colored(std::string_view bytes, hex_options options = {}, color_depth depth = color_depth::truecolor)
{
    options.colored = true;
    return readable(to_string(hexdump(bytes_of(bytes), options), depth));
}

TEST(HexviewColor, HasOneSequenceForEachRunOfAKind)
{
    // Two letters, a zero and a byte of all ones: each kind begins once in the digits and once in the text.
    EXPECT_EQ(colored("ab\0\xff"sv, {.width = 4}),
              R"(00000000: \e[36m6162 \e[2;39m00\e[22;31mff  \e[36mab\e[2;39m.\e[22;31m.\e[39m\n)");
    // The run goes on from the digits into the text, over blanks and marks.
    EXPECT_EQ(colored("abc", {.layout = hexdump_c, .width = 3}),
              R"(00000000  \e[36m61 62 63  |abc\e[39m|\n00000003\n)");
}

TEST(HexviewColor, TellsTheKindsOfBytesApart)
{
    hex_theme const theme = {.zero = fg(palette(0)),
                             .printable = fg(palette(1)),
                             .space = fg(palette(2)),
                             .control = fg(palette(3)),
                             .high = fg(palette(4)),
                             .all_bits = fg(palette(5)),
                             .offset = {}};
    for (int value = 0; value != 256; ++value) {
        bool const space = value == ' ' || (value >= 9 && value <= 13);
        int const kind = value == 0     ? 0
                         : value == 255 ? 5
                         : value >= 128 ? 4
                         : space        ? 2
                         : value < 32   ? 3
                         : value == 127 ? 3
                                        : 1;
        std::string const row = colored(std::string(1, static_cast<char>(value)), {.width = 1, .theme = theme});
        EXPECT_EQ(row.substr(0, 10), "00000000: ");
        EXPECT_EQ(row.substr(10, 10), R"(\e[38;5;)" + std::to_string(kind) + "m") << value;
    }
}

TEST(HexviewColor, ColorsOffsetsIfTheThemeDoes)
{
    hex_theme theme;
    theme.offset = fg(blue);
    EXPECT_EQ(colored("a", {.layout = od, .width = 1, .theme = theme}), R"(\e[34m000000 \e[36m61  >a\e[39m<\n)"
                                                                        R"(\e[34m000001\e[39m\n)");
    EXPECT_EQ(colored("a", {.width = 1, .offsets = none, .theme = theme}), R"(\e[36m61  a\e[39m\n)");
}

TEST(HexviewColor, HasNoSequenceBetweenKindsThatLookTheSame)
{
    hex_theme theme;
    theme.space = theme.printable;
    theme.control = {};
    EXPECT_EQ(colored("a b\x01", {.width = 4, .group = 1, .theme = theme}),
              R"(00000000: \e[36m61 20 62 \e[39m01  \e[36ma b\e[39m.\n)");
}

TEST(HexviewColor, ReducesItsColorsToTheDepth)
{
    hex_theme theme;
    theme.printable = fg(rgb(255, 0, 0)) | bold;
    hex_options const options = {.width = 1, .theme = theme};
    EXPECT_EQ(colored("a", options, color_depth::truecolor), "00000000: \\e[1;38;2;255;0;0m61  a\\e[22;39m\\n");
    EXPECT_EQ(colored("a", options, color_depth::ansi256), "00000000: \\e[1;38;5;196m61  a\\e[22;39m\\n");
    EXPECT_EQ(colored("a", options, color_depth::none), "00000000: 61  a\\n");
}

TEST(HexviewColor, FollowsTheDepthOfTheStream)
{
    std::ostringstream os;
    set_depth(os, color_depth::none);
    os << hexdump(bytes_of("a"), {.width = 1, .colored = true});
    EXPECT_EQ(os.str(), "00000000: 61  a\n");
    os.str("");
    set_depth(os, color_depth::ansi16);
    os << hexdump(bytes_of("a"), {.width = 1, .colored = true});
    EXPECT_EQ(readable(os.str()), "00000000: \\e[36m61  a\\e[39m\\n");
    os.str("");
    os << hexdump(bytes_of("a"), {.width = 1}); // unless it is asked for
    EXPECT_EQ(os.str(), "00000000: 61  a\n");
    os.str("");
    hex_writer writer(os, {.width = 1, .colored = true});
    writer.write(bytes_of("a"));
    EXPECT_EQ(readable(os.str()), "00000000: \\e[36m61  a\\e[39m\\n");
}

TEST(HexviewColor, KeepsPlainDigitsOfOneLineInTheirRuns)
{
    hex_options const options = {.layout = xxd_plain, .width = 0};
    std::string const digits = "6161616161616161616161616161616161616161";
    EXPECT_EQ(colored(std::string(20, 'a'), options), R"(\e[36m)" + digits + R"(\e[39m\n)");
    EXPECT_EQ(colored(std::string(16, 'a'), options), R"(\e[36m)" + digits.substr(0, 32) + R"(\e[39m\n)");
}

bool has_two_sequences_in_one_place(std::string_view text)
{
    for (std::size_t at = text.find('\x1b'); at != text.npos; at = text.find('\x1b', at)) {
        at = text.find('m', at) + 1;
        if (text.substr(at, 1) == "\x1b") {
            return true;
        }
    }
    return false;
}

TEST(HexviewColor, IsThePlainFormWithoutItsSequences)
{
    auto const seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    hex_theme long_sequences;
    long_sequences.printable = fg(rgb(201, 202, 203)) | bg(rgb(204, 205, 206)) | bold | italic | underline;
    long_sequences.offset = fg(rgb(211, 212, 213)) | crossed_out;
    for (int i = 0; i != 500; ++i) {
        std::string bytes(random() % 300, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random() % 3 == 0 ? random() : random() % 4 * 40);
        }
        hex_options options;
        options.layout = static_cast<hex_layout>(random() % 6);
        options.width = random() % 40;
        options.group = std::size_t{1} << random() % 6;
        options.offsets = static_cast<hex_offsets>(random() % 4);
        options.first_offset = random() % 2 == 0 ? random() : 0xffffff80;
        options.squeeze = random() % 2 == 0;
        options.theme = random() % 2 == 0 ? long_sequences : hex_theme{};
        std::string const plain = view(bytes, options);
        options.colored = true;
        std::string const rows = view(bytes, options);
        ASSERT_EQ(strip_escapes(rows), plain);
        ASSERT_FALSE(has_two_sequences_in_one_place(rows)) << readable(rows);
        // A line that starts plain ends plain: the last sequence of each gives back what the first has taken.
        std::istringstream lines(rows);
        for (std::string line; std::getline(lines, line);) {
            Screen const screen(line + "\r\nx", 3, 2000);
            Cell const next = screen.cell(1, 0);
            ASSERT_TRUE(next.foreground.is_default && next.background.is_default) << readable(line);
            ASSERT_FALSE(next.bold || next.italic || next.underline || next.strike) << readable(line);
        }
    }
}

TEST(HexviewColor, ShowsEachByteInItsColorInBothColumns)
{
    std::string bytes = "a\n\x01\x80\xff\0 b~\x7f";
    bytes += std::string("\0 \xfe\xff", 4);
    Screen const screen(to_string(hexdump(bytes_of(bytes), {.layout = hexdump_c, .colored = true})));
    for (std::size_t i = 0; i != bytes.size(); ++i) {
        auto const byte = static_cast<unsigned char>(bytes[i]);
        int const digits = static_cast<int>(10 + 3 * i + i / 8);
        int const text = static_cast<int>(61 + i);
        bool const space = byte == '\n' || byte == ' ';
        int const wanted = byte == 0xff ? 1 : byte >= 0x80 ? 3 : space ? 2 : byte < 0x20 || byte == 0x7f ? 5 : 6;
        for (int const column : {digits, digits + 1, text}) {
            Color const shown = screen.cell(0, column).foreground;
            EXPECT_EQ(shown.is_default, byte == 0) << i;
            EXPECT_EQ(byte == 0 ? wanted : shown.index, wanted) << i;
        }
    }
    EXPECT_TRUE(screen.cell(0, 0).foreground.is_default);
}

} // namespace
