#include "kestry/hueline_stream.hpp"

#include "api/layout.hpp"

#include "support/testing.hpp"

namespace {

using namespace kestry::Hueline;
using hueline::test::offset;
using hueline::test::value_at;

constexpr int string_size = sizeof(std::string);
constexpr int pointer = sizeof(void*);
constexpr int after_three_ints = pointer == 8 ? 16 : 12; // where a reference has its place

template <class Guard>
constexpr bool stays_in_its_scope = std::is_default_constructible_v<Guard> && !std::is_copy_constructible_v<Guard> &&
                                    !std::is_move_constructible_v<Guard> && !std::is_copy_assignable_v<Guard> &&
                                    !std::is_move_assignable_v<Guard> && !std::is_polymorphic_v<Guard>;

static_assert(stays_in_its_scope<UseColorMode> && std::is_empty_v<UseColorMode>);
static_assert(stays_in_its_scope<NoColorMode> && std::is_empty_v<NoColorMode>);
static_assert(stays_in_its_scope<NoFrillsMode> && sizeof(NoFrillsMode) == sizeof(bool));
static_assert(stays_in_its_scope<UseFrillsMode> && sizeof(UseFrillsMode) == sizeof(bool));

TEST(Layout, FrillsGuardsHoldTheModeThatTheyPutBack)
{
    _setNoFrillsMode(true);
    NoFrillsMode const in_no_frills;
    EXPECT_TRUE(value_at<bool>(in_no_frills, 0));
    _setNoFrillsMode(false);
    UseFrillsMode const in_frills;
    EXPECT_FALSE(value_at<bool>(in_frills, 0));
}

template <class Struct, std::size_t Fields>
constexpr bool holds_ints =
    sizeof(Struct) == Fields * sizeof(int) &&
    std::conjunction_v<std::is_aggregate<Struct>, std::is_trivial<Struct>, std::is_standard_layout<Struct>>;

template <class... Structs>
constexpr bool hold_a_code = ((holds_ints<Structs, 1> && std::is_same_v<decltype(Structs::code), int>)&&...);

template <class... Structs>
constexpr bool hold_an_n = ((holds_ints<Structs, 1> && std::is_same_v<decltype(Structs::n), int>)&&...);

static_assert(hold_a_code<color, on_color, parameters_template>);
static_assert(hold_an_n<csi::ed, csi::el, csi::cuu, csi::cud, csi::cuf, csi::cub, csi::cnl, csi::cpl, csi::cha, csi::su,
                        csi::sd, csi::sgr>);
static_assert(holds_ints<csi::delay, 1> && std::is_same_v<decltype(csi::delay::ms), int>);
static_assert(holds_ints<rgb, 3> && offsetof(rgb, r) == 0 && offsetof(rgb, g) == 4 && offsetof(rgb, b) == 8);
static_assert(holds_ints<on_rgb, 3> && offsetof(on_rgb, r) == 0 && offsetof(on_rgb, g) == 4 &&
              offsetof(on_rgb, b) == 8);

static_assert(holds_ints<csi::cup, 2> && offsetof(csi::cup, row) == 0 && offsetof(csi::cup, col) == 4);
static_assert(holds_ints<csi::hvp, 2> && offsetof(csi::hvp, row) == 0 && offsetof(csi::hvp, col) == 4);

static_assert(std::is_aggregate_v<myfillandw> && std::is_trivial_v<myfillandw> && sizeof(myfillandw) == 8);
static_assert(std::is_same_v<decltype(myfillandw::fill), char> && offsetof(myfillandw, fill) == 0);
static_assert(std::is_same_v<decltype(myfillandw::width), int> && offsetof(myfillandw, width) == 4);

static_assert(std::is_aggregate_v<spinner> && sizeof(spinner) == pointer + string_size);
static_assert(std::is_same_v<decltype(spinner::frames), std::string const&>);

static_assert(std::is_aggregate_v<status_line> && sizeof(status_line) == after_three_ints + pointer + 5 * string_size);
static_assert(std::is_same_v<decltype(status_line::done), std::string const&>);

static_assert(std::is_aggregate_v<progress_meter> &&
              sizeof(progress_meter) == after_three_ints + pointer + 3 * string_size);
static_assert(std::is_same_v<decltype(progress_meter::label), std::string const&>);

TEST(Layout, SpinnerHoldsItsFieldsInOrder)
{
    std::string const frames = "|/-\\";
    spinner const s{frames, "label"};
    EXPECT_EQ(value_at<std::string const*>(s, 0), &frames);
    EXPECT_EQ(offset(s, s.label), pointer);
}

TEST(Layout, StatusLineHoldsItsFieldsInOrder)
{
    std::string const done = "#";
    status_line const s{1, 2, 3, done, "todo", "prefix", "suffix", "frames", "spin"};
    EXPECT_EQ(offset(s, s.position), 0);
    EXPECT_EQ(offset(s, s.start), 4);
    EXPECT_EQ(offset(s, s.end), 8);
    EXPECT_EQ(value_at<std::string const*>(s, after_three_ints), &done);
    EXPECT_EQ(offset(s, s.todo), after_three_ints + pointer);
    EXPECT_EQ(offset(s, s.prefix), after_three_ints + pointer + string_size);
    EXPECT_EQ(offset(s, s.suffix), after_three_ints + pointer + 2 * string_size);
    EXPECT_EQ(offset(s, s.frames), after_three_ints + pointer + 3 * string_size);
    EXPECT_EQ(offset(s, s.spin_label), after_three_ints + pointer + 4 * string_size);
}

TEST(Layout, ProgressMeterHoldsItsFieldsInOrder)
{
    std::string const label = "label";
    progress_meter const m{1, 2, 3, label, "lead", "after", "before"};
    EXPECT_EQ(offset(m, m.position), 0);
    EXPECT_EQ(offset(m, m.start), 4);
    EXPECT_EQ(offset(m, m.end), 8);
    EXPECT_EQ(value_at<std::string const*>(m, after_three_ints), &label);
    EXPECT_EQ(offset(m, m.lead), after_three_ints + pointer);
    EXPECT_EQ(offset(m, m.after), after_three_ints + pointer + string_size);
    EXPECT_EQ(offset(m, m.before), after_three_ints + pointer + 2 * string_size);
}

// A constructor would end the temporary with the initialisation.
TEST(Layout, ATemporaryInBracesLivesAsLongAsTheIndicator)
{
    spinner const s{std::string("frames that are too long for a short string"), ""};
    EXPECT_EQ(s.frames, "frames that are too long for a short string");
}

template <class Type, class... From>
constexpr bool is_made_of = (std::is_convertible_v<From, Type> && ...);

template <class... Themes>
constexpr bool hold_a_text = ((is_made_of<Themes, std::string> && sizeof(Themes) == string_size &&
                               !std::is_polymorphic_v<Themes> &&
                               std::is_same_v<decltype(Themes::text), std::string>)&&...);

template <class... Themes>
constexpr bool hold_a_byte = ((is_made_of<Themes, std::uint8_t> && sizeof(Themes) == 1 &&
                               !std::is_polymorphic_v<Themes> &&
                               std::is_same_v<decltype(Themes::byte), std::uint8_t>)&&...);

static_assert(
    hold_a_text<ColorTheme::app_title, ColorTheme::alert, ColorTheme::info, ColorTheme::default_text,
                ColorTheme::seperator, ColorTheme::help, ColorTheme::prompt, ColorTheme::version, ColorTheme::cursor,
                ColorTheme::commandLine, ColorTheme::name, DataTheme::request_title, DataTheme::response_title>);
static_assert(hold_a_byte<DataTheme::immediate_destination, DataTheme::total_count>);
static_assert(is_made_of<ColorTheme::path, std::string, std::uint32_t>);
static_assert(sizeof(ColorTheme::path) == 2 * pointer + string_size);
static_assert(is_made_of<DataTheme::crc, std::uint8_t, std::uint16_t> && sizeof(DataTheme::crc) == 4);

TEST(Layout, PathHoldsItsFieldsInOrder)
{
    ColorTheme::path const text("text");
    EXPECT_TRUE(value_at<bool>(text, 0));
    EXPECT_TRUE(text.is_text);
    EXPECT_EQ(offset(text, text.text), pointer);
    EXPECT_EQ(text.text, "text");
    EXPECT_EQ(text.number, 0u);

    ColorTheme::path const number(std::uint32_t{0xfffefdfc});
    EXPECT_FALSE(value_at<bool>(number, 0));
    EXPECT_FALSE(number.is_text);
    EXPECT_EQ(number.text, "");
    EXPECT_EQ(number.number, 0xfffefdfc);
    EXPECT_EQ(value_at<std::uint32_t>(number, pointer + string_size), 0xfffefdfc);
}

TEST(Layout, CrcHoldsItsFieldsInOrder)
{
    DataTheme::crc const narrow(std::uint8_t{0x12});
    EXPECT_FALSE(value_at<bool>(narrow, 0));
    EXPECT_EQ(value_at<std::uint8_t>(narrow, 1), 0x12);

    DataTheme::crc const wide(std::uint16_t{0xbeef});
    EXPECT_TRUE(value_at<bool>(wide, 0));
    EXPECT_EQ(value_at<std::uint16_t>(wide, 2), 0xbeef);
}

static_assert(sizeof(HexDump) == string_size && !std::is_polymorphic_v<HexDump>);
static_assert(std::is_copy_constructible_v<HexDump> && std::is_copy_assignable_v<HexDump>);
static_assert(std::is_same_v<decltype(HexDump::_longDumps), bool>);

static_assert(is_made_of<HexDump, char, unsigned char, unsigned short, unsigned long, std::vector<unsigned int>,
                         std::vector<unsigned char>, std::string>);

TEST(Constructors, TakeWhatTheyHoldWhereADumpOrAThemeIsWanted)
{
    auto const text_of = [](HexDump const& dump) {
        std::ostringstream os;
        os << dump;
        return os.str();
    };
    std::vector<unsigned char> const bytes{0x01, 0xff};
    EXPECT_EQ(text_of(bytes), "01 ff ");
    EXPECT_EQ(text_of(std::vector<unsigned int>{1}), "00000001 ");
    EXPECT_EQ(text_of('A'), "41");
    EXPECT_EQ(text_of({bytes, ":"}), "01:ff:");
    EXPECT_EQ(text_of({"AB"}), "41 42 ");
    EXPECT_EQ(text_of(static_cast<unsigned char>(5)), "05");

    auto const alarmed = [](ColorTheme::alert const& alert) { return alert.text; };
    EXPECT_EQ(alarmed({"x"}), "x");
    EXPECT_EQ(alarmed(std::string("y")), "y");
}

TEST(Layout, HexDumpIsItsText)
{
    HexDump const dump('A');
    EXPECT_EQ(*reinterpret_cast<std::string const*>(&dump), "41");
}

} // namespace
