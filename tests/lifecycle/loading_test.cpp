// The shared object in a program that is not linked with it: loaded, used and unloaded at run time.

#include "support/testing.hpp"

#include <dlfcn.h>
#include <malloc.h>

namespace {

using namespace hueline::test;

using Manipulator = std::ostream& (*)(std::ostream&);

// libhueline from construction to destruction.
class Library {
public:
    explicit Library(int how = RTLD_NOW | RTLD_LOCAL) : handle(dlopen(HUELINE_LIBRARY, how))
    {
        if (handle == nullptr) {
            throw std::runtime_error(dlerror());
        }
    }
    Library(Library const&) = delete;
    Library& operator=(Library const&) = delete;
    ~Library() { dlclose(handle); }

    template <class Pointer>
    Pointer symbol(char const* name) const
    {
        void* const address = dlsym(handle, name);
        if (address == nullptr) {
            throw std::runtime_error(dlerror());
        }
        return reinterpret_cast<Pointer>(address);
    }

    Manipulator colorize() const { return symbol<Manipulator>("_ZN6kestry7Hueline8colorizeERSo"); }
    Manipulator red() const { return symbol<Manipulator>("_ZN6kestry7Hueline3redERSo"); }
    Manipulator italic() const { return symbol<Manipulator>("_ZN6kestry7Hueline6italicERSo"); }
    Manipulator thin() const { return symbol<Manipulator>("_ZN6kestry7Hueline4thinERSo"); }
    void set_no_frills(bool on) const { symbol<void (*)(bool)>("_ZN6kestry7Hueline16_setNoFrillsModeEb")(on); }
    bool no_frills() const { return symbol<bool (*)()>("_ZN6kestry7Hueline16_getNoFrillsModeEv")(); }

private:
    void* handle;
};

// How many pieces of files and of memory the process has in its address space.
int mappings()
{
    std::ifstream file("/proc/self/maps");
    int count = 0;
    for (std::string line; std::getline(file, line);) {
        ++count;
    }
    return count;
}

bool is_loaded()
{
    void* const handle = dlopen(HUELINE_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}

TEST(Loading, WorksImmediatelyAndLazily)
{
    for (int const how : {RTLD_NOW | RTLD_LOCAL, RTLD_LAZY | RTLD_LOCAL, RTLD_NOW | RTLD_GLOBAL}) {
        auto const run = on_terminal([how] {
            Library const library(how);
            std::cout << library.colorize() << library.red() << "text";
        });
        EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31mtext)");
        EXPECT_EQ(run.status, 0) << run.report;
    }
}

TEST(Loading, KeepsTheSymbolsFromTheOthersIfLocalAndGivesOneStateToAll)
{
    auto const run = on_terminal([] {
        Library const library(RTLD_NOW | RTLD_LOCAL);
        report(dlsym(RTLD_DEFAULT, "_ZN6kestry7Hueline3redERSo") == nullptr ? "local " : "global ");
        Library const again(RTLD_NOW | RTLD_GLOBAL);
        report(dlsym(RTLD_DEFAULT, "_ZN6kestry7Hueline3redERSo") == nullptr ? "local " : "global ");
        library.set_no_frills(true);
        report(again.no_frills() ? "shared" : "not shared");
    });
    EXPECT_EQ(run.report, "local global shared");
}

TEST(Loading, ThrowsExceptionsThatTheProgramKnows)
{
    auto const run = on_terminal([] {
        Library const library;
        int const no_color = 16;
        auto const vga =
            library.symbol<std::string (*)(int const&)>("_ZN6kestry7Hueline5colorB5cxx11ERKNS_12HexColor_VGAE");
        try {
            vga(no_color);
        } catch (std::exception const& e) {
            report(e.what());
        }
    });
    EXPECT_EQ(run.report, "UnknownCodeException passed to Hueline");
}

// The streams outlive the library, and what is written to them goes out.
TEST(Unloading, LeavesNothingLoadedAndTheStreamsToTheProgram)
{
    auto const run = on_terminal([] {
        {
            Library const library;
            std::cout << library.colorize() << library.red() << "red ";
            report(is_loaded() ? "loaded " : "not loaded ");
        }
        report(is_loaded() ? "loaded " : "not loaded ");
        std::cout << "still red\n" << std::flush;
        report(std::cout.good() ? "good" : "failed");
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31mred still red\n)");
    EXPECT_EQ(run.report, "loaded not loaded good");
    EXPECT_EQ(run.status, 0);
}

TEST(Reloading, StartsAnew)
{
    auto const run = on_terminal([] {
        {
            Library const library;
            std::cout << library.colorize() << library.thin() << library.italic() << library.red();
            library.set_no_frills(true);
        }
        Library const library;
        report(library.no_frills() ? "no frills" : "frills");
        std::cout << library.red() << "not colorized yet" << library.colorize() << library.red();
    });
    EXPECT_EQ(run.report, "frills");
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[00m\e[3m\e[00m\e[3m\e[31mnot colorized yet\e[00m\e[1m\e[31m)");
}

// Loads the library and has it keep what needs memory: a foreground longer than a string's own room.
void use_once()
{
    Library const library;
    struct {
        int r, g, b;
    } const gold = {-255000000, -215000000, 0};
    auto const insert =
        library.symbol<std::ostream& (*)(std::ostream&, void const*)>("_ZN6kestry7HuelinelsERSoRKNS0_3rgbE");
    insert(std::cout << library.colorize(), &gold) << std::flush;
}

TEST(Reloading, AThousandTimesTakesNoMemoryButTheStreamsWords)
{
    int constexpr loads = 1000;
    auto const run = on_terminal([] {
        for (int i = 0; i < 200; ++i) {
            use_once(); // what the loader and the allocator keep for the next time
        }
        int const mappings_before = mappings();
        std::size_t const bytes_before = mallinfo2().uordblks;
        for (int i = 0; i < loads; ++i) {
            use_once();
        }
        std::size_t const bytes_after = mallinfo2().uordblks;
        int const mappings_after = mappings();
        if (mappings_after != mappings_before) {
            report(std::to_string(mappings_before) + " to " + std::to_string(mappings_after) + " mappings ");
        }
        // std::ios_base::xalloc takes no index back: each load has a word of its own in a colorized
        // stream, beside a pointer.
        std::size_t const words = loads * (sizeof(long) + sizeof(void*));
        if (bytes_after > bytes_before + words + 100) {
            report(std::to_string(bytes_before) + " to " + std::to_string(bytes_after) + " bytes");
        }
    });
    EXPECT_EQ(run.report, "");
    EXPECT_EQ(readable(run.out.substr(0, 40)), R"(\e[00m\e[1m\e[38;2;-255000000;-215000000;0m)");
    EXPECT_EQ(run.status, 0);
}

} // namespace
