#include <kestry/kit/hexview.hpp>

#include "kit/hexview.hpp"

#include "support/testing.hpp"

// Each test compares with a tool as it is installed here, on bytes and options that are new in every run.
namespace {

using namespace kestry::kit;
using namespace hueline::test;

Sinks const on_pipes = {Sink::pipe, Sink::pipe};

using Arguments = std::vector<std::string>;

// A file that goes with the test.
class File {
public:
    explicit File(std::string const& contents) : File()
    {
        std::ofstream(path, std::ios::binary) << contents;
        seek(0);
    }

    // Zeros that take no room, and the contents at the end.
    File(std::uintmax_t zeros, std::string const& contents) : File()
    {
        std::filesystem::resize_file(path, zeros);
        std::ofstream(path, std::ios::binary | std::ios::app) << contents;
    }

    File(File const&) = delete;
    File& operator=(File const&) = delete;
    ~File()
    {
        ::close(descriptor);
        ::unlink(path.c_str());
    }

    void seek(off_t to) const { ::lseek(descriptor, to, SEEK_SET); }

    std::string path;
    int descriptor;

private:
    File()
    {
        path = (std::filesystem::temp_directory_path() / "hexview-XXXXXX").string();
        descriptor = mkstemp(path.data());
        if (descriptor < 0) {
            throw std::runtime_error("no file " + path);
        }
    }
};

// What there is at hand to compare with.
struct Tool {
    explicit Tool(std::string const& program) : name(program)
    {
        is_here = run_program(on_pipes, {"sh", "-c", "command -v " + name}).status == 0;
    }

    std::string name;
    bool is_here;
};

std::string text_of(Arguments const& arguments)
{
    std::string text;
    for (std::string const& argument : arguments) {
        text += argument + ' ';
    }
    return text;
}

std::string from_file(File const& file, hex_options const& options)
{
    std::ostringstream os;
    hexdump_file(os, file.descriptor, options);
    file.seek(0);
    return os.str();
}

std::string in_pieces(std::string const& bytes, hex_options const& options, std::mt19937_64& random)
{
    std::ostringstream os;
    hex_writer writer(os, options);
    std::span<std::byte const> left = bytes_of(bytes);
    while (!left.empty()) {
        auto const some = static_cast<std::size_t>(std::min<std::uint64_t>(left.size(), 1 + random() % 40));
        writer.write(left.first(some));
        left = left.subspan(some);
    }
    writer.finish();
    return os.str();
}

// Random choices, which the message about a failure can repeat.
class Choices {
public:
    explicit Choices(std::uint64_t seed) : random(seed) {}

    std::size_t below(std::size_t end) { return static_cast<std::size_t>(random() % end); }
    bool one_in(std::size_t n) { return below(n) == 0; }

    // Bytes of any kind, and stretches of one byte, so that rows repeat.
    std::string bytes(std::size_t size)
    {
        std::string all;
        while (all.size() < size) {
            if (one_in(2)) {
                all.append(below(120), one_in(3) ? static_cast<char>(random()) : '\0');
            } else {
                for (std::uint64_t n = below(50); n != 0; --n) {
                    all += static_cast<char>(random());
                }
            }
        }
        all.resize(size);
        return all;
    }

    std::mt19937_64 random;
};

std::uint64_t fresh_seed() { return std::random_device{}() * std::uint64_t{0x1'0000'0001}; }

int constexpr rounds = 150;

// Compares all three ways with the tool.
void expect_equal(Tool const& tool, Arguments const& arguments, std::string const& bytes, hex_options const& options,
                  Choices& choices)
{
    File const file(bytes);
    Arguments command = {tool.name};
    command.insert(command.end(), arguments.begin(), arguments.end());
    command.push_back(file.path);
    Outcome const run = run_program(on_pipes, command);
    SCOPED_TRACE(text_of(command) + " with " + std::to_string(bytes.size()) + " bytes");
    if (run.status != 0) {
        EXPECT_THROW(hexdump(bytes_of(bytes), options), std::invalid_argument) << run.err;
        std::ostringstream os;
        EXPECT_THROW(hexdump_file(os, file.descriptor, options), std::invalid_argument) << run.err;
        return;
    }
    EXPECT_EQ(view(bytes, options), run.out);
    EXPECT_EQ(from_file(file, options), run.out);
    if (options.skip >= 0) {
        EXPECT_EQ(in_pieces(bytes, options, choices.random), run.out);
    }
}

void add(Arguments& arguments, std::string const& option, std::int64_t number)
{
    arguments.push_back(option);
    arguments.push_back(std::to_string(number));
}

// Skip and length are the same for all.
void choose_part(Choices& choices, std::size_t size, hex_options& options, Arguments& arguments,
                 std::string const& skip, std::string const& length)
{
    if (choices.one_in(3)) {
        options.skip = static_cast<std::int64_t>(choices.below(size + 20));
        add(arguments, skip, options.skip);
    }
    if (choices.one_in(3)) {
        options.length = choices.below(size + 20);
        add(arguments, length, static_cast<std::int64_t>(*options.length));
    }
}

// ---------------------------------------------------------------------------------------------
// xxd
// ---------------------------------------------------------------------------------------------

// The forms of xxd and their options.
void choose_form(Choices& choices, hex_options& options, Arguments& arguments)
{
    switch (choices.below(6)) {
    case 0:
        options.layout = hex_layout::xxd_bits;
        arguments.emplace_back("-b");
        break;
    case 1:
        options.layout = hex_layout::xxd_little_endian;
        arguments.emplace_back("-e");
        break;
    case 2:
        options.layout = hex_layout::xxd_plain;
        arguments.emplace_back("-p");
        break;
    default:
        break;
    }
}

void choose_width_and_group(Choices& choices, hex_options& options, Arguments& arguments)
{
    if (choices.one_in(2)) {
        options.width = choices.one_in(3) ? choices.below(257) : choices.below(20);
        add(arguments, "-c", static_cast<std::int64_t>(*options.width));
    }
    if (choices.one_in(2)) {
        bool const power_of_two = options.layout == hex_layout::xxd_little_endian;
        options.group = power_of_two ? 1U << choices.below(6) : choices.below(20);
        add(arguments, "-g", static_cast<std::int64_t>(*options.group));
    }
}

void choose_offsets(Choices& choices, hex_options& options, Arguments& arguments)
{
    if (choices.one_in(5)) {
        options.offsets = hex_offsets::decimal;
        arguments.emplace_back("-d");
    }
    if (choices.one_in(3)) {
        std::int64_t const offsets[] = {1, -3, 99999990, 0xfffffff0, 0x12345678abc, std::int64_t{1} << 62};
        std::int64_t const offset = offsets[choices.below(std::size(offsets))];
        options.first_offset = static_cast<std::uint64_t>(offset);
        add(arguments, "-o", offset);
    }
}

// That of 2022, and the kit, lose some text of little-endian rows whose last group is not full.
bool keeps_all_text(Tool const& xxd)
{
    return run_program(on_pipes, {"sh", "-c", "printf abcdef | " + xxd.name + " -e -c 6"}).out !=
           "00000000: 64636261     6665cdef\n";
}

TEST(HexviewTools, EqualsXxd)
{
    Tool const xxd("xxd");
    if (!xxd.is_here) {
        GTEST_SKIP() << "xxd is not installed";
    }
    bool const wants_full_groups = keeps_all_text(xxd);
    std::uint64_t const seed = fresh_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Choices choices(seed);
    for (int i = 0; i != rounds && !testing::Test::HasFailure(); ++i) {
        std::string const bytes = choices.bytes(choices.below(301));
        hex_options options;
        Arguments arguments;
        choose_form(choices, options, arguments);
        choose_width_and_group(choices, options, arguments);
        choose_offsets(choices, options, arguments);
        choose_part(choices, bytes.size(), options, arguments, "-s", "-l");
        if (options.skip == 0 && choices.one_in(4)) {
            options.skip = -1 - static_cast<std::int64_t>(choices.below(bytes.size() + 2));
            add(arguments, "-s", options.skip);
        }
        if (choices.one_in(2)) {
            options.squeeze = true;
            arguments.emplace_back("-a");
        }
        if (choices.one_in(3)) {
            options.uppercase = true;
            arguments.emplace_back("-u");
        }
        if (options.layout == hex_layout::xxd_little_endian && wants_full_groups &&
            options.width.value_or(16) % options.group.value_or(4) != 0) {
            continue;
        }
        expect_equal(xxd, arguments, bytes, options, choices);
    }
}

TEST(HexviewTools, EqualsXxdForEveryRunOfZeros)
{
    Tool const xxd("xxd");
    if (!xxd.is_here) {
        GTEST_SKIP() << "xxd is not installed";
    }
    Choices choices(1);
    for (std::string const before : {"", "abcd"}) {
        for (std::size_t zeros = 0; zeros != 6; ++zeros) {
            for (std::string const after : {"", "x", "abcd", "abcde"}) {
                std::string const bytes = before + std::string(4 * zeros, '\0') + after;
                expect_equal(xxd, {"-a", "-c", "4"}, bytes, {.width = 4, .squeeze = true}, choices);
            }
        }
    }
}

// ---------------------------------------------------------------------------------------------
// hexdump and od
// ---------------------------------------------------------------------------------------------

TEST(HexviewTools, EqualsHexdump)
{
    Tool const tool("hexdump");
    if (!tool.is_here) {
        GTEST_SKIP() << "hexdump is not installed";
    }
    std::uint64_t const seed = fresh_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Choices choices(seed);
    for (int i = 0; i != rounds && !testing::Test::HasFailure(); ++i) {
        std::string const bytes = choices.bytes(choices.below(301));
        hex_options options = {.layout = hex_layout::hexdump_c};
        Arguments arguments = {"-C"};
        choose_part(choices, bytes.size(), options, arguments, "-s", "-n");
        if (choices.one_in(3)) {
            options.squeeze = false;
            arguments.emplace_back("-v");
        }
        expect_equal(tool, arguments, bytes, options, choices);
    }
}

TEST(HexviewTools, EqualsOd)
{
    Tool const od("od");
    std::uint64_t const seed = fresh_seed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Choices choices(seed);
    struct {
        hex_offsets offsets;
        char const* letter;
    } const radices[] = {{hex_offsets::hexadecimal, "x"},
                         {hex_offsets::decimal, "d"},
                         {hex_offsets::octal, "o"},
                         {hex_offsets::none, "n"}};
    for (int i = 0; i != rounds && !testing::Test::HasFailure(); ++i) {
        std::string const bytes = choices.bytes(choices.below(301));
        hex_options options = {.layout = hex_layout::od};
        auto const& radix = radices[choices.one_in(2) ? 0 : choices.below(4)];
        options.offsets = radix.offsets;
        Arguments arguments = {"-A", radix.letter, "-t", "x1z"};
        choose_part(choices, bytes.size(), options, arguments, "-j", "-N");
        if (choices.one_in(2)) {
            options.width = 1 + (choices.one_in(3) ? choices.below(300) : choices.below(20));
            arguments.push_back("-w" + std::to_string(*options.width));
        }
        if (choices.one_in(3)) {
            options.squeeze = false;
            arguments.emplace_back("-v");
        }
        expect_equal(od, arguments, bytes, options, choices);
    }
}

// ---------------------------------------------------------------------------------------------
// Large files
// ---------------------------------------------------------------------------------------------

// Offsets get a digit more on the way.
TEST(HexviewTools, EqualsEachToolPastFourGigabytes)
{
    std::uintmax_t const four_gigabytes = std::uintmax_t{1} << 32;
    File const file(four_gigabytes + 40, "the end");
    struct {
        Arguments command;
        hex_options options;
    } const cases[] = {
        {{"xxd", "-s", "4294967250"}, {.skip = 4294967250}},
        {{"xxd", "-a", "-d", "-s", "4294967250"},
         {.offsets = hex_offsets::decimal, .skip = 4294967250, .squeeze = true}},
        {{"xxd", "-s", "-70"}, {.skip = -70}},
        {{"hexdump", "-C", "-v", "-s", "4294967250"},
         {.layout = hex_layout::hexdump_c, .skip = 4294967250, .squeeze = false}},
        {{"hexdump", "-C", "-s", "4294967200"}, {.layout = hex_layout::hexdump_c, .skip = 4294967200}},
        {{"hexdump", "-C", "-s", "5000000000"}, {.layout = hex_layout::hexdump_c, .skip = 5000000000}},
        {{"od", "-A", "x", "-t", "x1z", "-v", "-j", "4294967250"},
         {.layout = hex_layout::od, .skip = 4294967250, .squeeze = false}},
        {{"od", "-A", "x", "-t", "x1z", "-v", "-j", "16777170", "-N", "100"},
         {.layout = hex_layout::od, .skip = 16777170, .length = 100, .squeeze = false}},
    };
    for (auto const& [command, options] : cases) {
        SCOPED_TRACE(text_of(command));
        if (!Tool(command[0]).is_here) {
            continue;
        }
        Arguments with_file = command;
        with_file.push_back(file.path);
        Outcome const run = run_program(on_pipes, with_file);
        EXPECT_NE(run.out, "");
        EXPECT_EQ(from_file(file, options), run.out);
    }
}

} // namespace
