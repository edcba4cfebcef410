#include <kestry/kit/hexview.hpp>

#include "kit/hexview.hpp"

#include "support/testing.hpp"

// Each test compares with a tool as it is installed here, on bytes and options that are new in every run.
namespace {

using namespace kestry::kit;
using namespace hueline::test;

using Arguments = std::vector<std::string>;

// A file that goes with the test.
class File {
public:
    explicit File(std::string const& contents) : File()
    {
        std::ofstream(path, std::ios::binary) << contents;
        seek(0);
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

// What is compared once.
struct Comparison {
    std::string bytes;
    hex_options options = {};
    Arguments arguments = {};
    bool is_wanted = true;
};

// Compares on bytes and options that the function chooses.
void expect_equal_at_random(Tool const& tool, std::function<void(Choices&, Comparison&)> const& choose)
{
    std::uint64_t const seed = std::random_device{}() * std::uint64_t{0x1'0000'0001};
    SCOPED_TRACE("seed " + std::to_string(seed));
    Choices choices(seed);
    for (int i = 0; i != 150 && !testing::Test::HasFailure(); ++i) {
        Comparison one = {.bytes = choices.bytes(choices.below(301))};
        choose(choices, one);
        if (one.is_wanted) {
            expect_equal(tool, one.arguments, one.bytes, one.options, choices);
        }
    }
}

void add(Arguments& arguments, std::string const& option, std::int64_t number)
{
    arguments.push_back(option);
    arguments.push_back(std::to_string(number));
}

// Skip and length are the same for all.
void choose_part(Choices& choices, Comparison& one, std::string const& skip, std::string const& length)
{
    if (choices.one_in(3)) {
        one.options.skip = static_cast<std::int64_t>(choices.below(one.bytes.size() + 20));
        add(one.arguments, skip, one.options.skip);
    }
    if (choices.one_in(3)) {
        one.options.length = choices.below(one.bytes.size() + 20);
        add(one.arguments, length, static_cast<std::int64_t>(*one.options.length));
    }
}

// An option without an argument.
template <class Value>
void choose(Choices& choices, std::size_t one_in, Comparison& one, Value hex_options::*option,
            std::type_identity_t<Value> value, char const* argument)
{
    if (choices.one_in(one_in)) {
        one.options.*option = value;
        one.arguments.emplace_back(argument);
    }
}

void choose_form(Choices& choices, Comparison& one)
{
    struct {
        hex_layout layout;
        char const* argument;
    } const forms[] = {
        {hex_layout::xxd_bits, "-b"}, {hex_layout::xxd_little_endian, "-e"}, {hex_layout::xxd_plain, "-p"}};
    std::size_t const form = choices.below(6); // xxd's own in half of the cases
    if (form < std::size(forms)) {
        one.options.layout = forms[form].layout;
        one.arguments.emplace_back(forms[form].argument);
    }
}

void choose_width_and_group(Choices& choices, Comparison& one)
{
    if (choices.one_in(2)) {
        one.options.width = choices.one_in(3) ? choices.below(257) : choices.below(20);
        add(one.arguments, "-c", static_cast<std::int64_t>(*one.options.width));
    }
    if (choices.one_in(2)) {
        bool const power_of_two = one.options.layout == hex_layout::xxd_little_endian;
        one.options.group = power_of_two ? 1U << choices.below(6) : choices.below(20);
        add(one.arguments, "-g", static_cast<std::int64_t>(*one.options.group));
    }
}

void choose_offsets(Choices& choices, Comparison& one)
{
    choose(choices, 5, one, &hex_options::offsets, hex_offsets::decimal, "-d");
    if (choices.one_in(3)) {
        std::int64_t const offsets[] = {1, -3, 99999990, 0xfffffff0, 0x12345678abc, std::int64_t{1} << 62};
        std::int64_t const offset = offsets[choices.below(std::size(offsets))];
        one.options.first_offset = static_cast<std::uint64_t>(offset);
        add(one.arguments, "-o", offset);
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
    expect_equal_at_random(xxd, [&](Choices& choices, Comparison& one) {
        hex_options& options = one.options;
        choose_form(choices, one);
        choose_width_and_group(choices, one);
        choose_offsets(choices, one);
        choose_part(choices, one, "-s", "-l");
        if (options.skip == 0 && choices.one_in(4)) {
            options.skip = -1 - static_cast<std::int64_t>(choices.below(one.bytes.size() + 2));
            add(one.arguments, "-s", options.skip);
        }
        choose(choices, 2, one, &hex_options::squeeze, true, "-a");
        choose(choices, 3, one, &hex_options::uppercase, true, "-u");
        if (options.layout == hex_layout::xxd_little_endian && wants_full_groups) {
            one.is_wanted = options.width.value_or(16) % options.group.value_or(4) == 0;
        }
    });
}

TEST(HexviewTools, EqualsHexdump)
{
    Tool const tool("hexdump");
    if (!tool.is_here) {
        GTEST_SKIP() << "hexdump is not installed";
    }
    expect_equal_at_random(tool, [](Choices& choices, Comparison& one) {
        one.options.layout = hex_layout::hexdump_c;
        one.arguments = {"-C"};
        choose_part(choices, one, "-s", "-n");
        choose(choices, 3, one, &hex_options::squeeze, false, "-v");
    });
}

TEST(HexviewTools, EqualsOd)
{
    struct {
        hex_offsets offsets;
        char const* letter;
    } const radices[] = {{hex_offsets::hexadecimal, "x"},
                         {hex_offsets::decimal, "d"},
                         {hex_offsets::octal, "o"},
                         {hex_offsets::none, "n"}};
    expect_equal_at_random(Tool("od"), [&](Choices& choices, Comparison& one) {
        auto const& radix = radices[choices.one_in(2) ? 0 : choices.below(4)];
        one.options.layout = hex_layout::od;
        one.options.offsets = radix.offsets;
        one.arguments = {"-A", radix.letter, "-t", "x1z"};
        choose_part(choices, one, "-j", "-N");
        if (choices.one_in(2)) {
            one.options.width = 1 + (choices.one_in(3) ? choices.below(300) : choices.below(20));
            one.arguments.push_back("-w" + std::to_string(*one.options.width));
        }
        choose(choices, 3, one, &hex_options::squeeze, false, "-v");
    });
}

} // namespace
