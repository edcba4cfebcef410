#include "kestry/hueline_stream.hpp"

#include "stream/state.hpp"
#include "stream/unformatted.hpp"

#include <chrono>
#include <ostream>
#include <ratio>
#include <string_view>

namespace kestry::detail {

std::ostream& show_cursor(std::ostream& os) { return unformatted(os, "\x1b[25h"); }

} // namespace kestry::detail

namespace kestry::Hueline::csi {

using namespace detail;

namespace {

std::ostream& fixed(std::ostream& os, std::string_view sequence)
{
    return allowColor(os) ? unformatted(os, sequence) : os;
}

// The numbers are the caller's stream's own insertions: its base and width show.
std::ostream& control(std::ostream& os, int n, char final_byte)
{
    if (!allowColor(os)) {
        return os;
    }
    unformatted(os, "\x1b[");
    os << n;
    return os.put(final_byte);
}

std::ostream& position(std::ostream& os, int row, int col, char final_byte)
{
    if (!allowColor(os)) {
        return os;
    }
    unformatted(os, "\x1b[");
    os << row << ';' << col;
    return os.put(final_byte);
}

} // namespace

// clang-format off
std::ostream& show(std::ostream& os) { return allowColor(os) ? show_cursor(os) : os; } // SM 25, ECMA-48 8.3.125
std::ostream& hide(std::ostream& os) { return fixed(os, "\x1b[25i"); }                 // the final byte of MC, media copy
std::ostream& cr  (std::ostream& os) { return unformatted(os, "\r"); }
std::ostream& lf  (std::ostream& os) { return unformatted(os, "\n"); }
std::ostream& cls (std::ostream& os) { return os << ed{2}; }
std::ostream& clr (std::ostream& os) { return cls(os); }
std::ostream& dsr (std::ostream& os) { return fixed(os, "\x1b[6n"); }                  // DSR, ECMA-48 8.3.35
std::ostream& scp (std::ostream& os) { return fixed(os, "\x1b[s"); }                   // no ECMA-48 function
std::ostream& rcp (std::ostream& os) { return fixed(os, "\x1b[u"); }                   // no ECMA-48 function

std::ostream& operator<<(std::ostream& os, ed const& p)  { return control(os, p.n, 'J'); } // ED,  ECMA-48 8.3.39
std::ostream& operator<<(std::ostream& os, el const& p)  { return control(os, p.n, 'K'); } // EL,  ECMA-48 8.3.41
std::ostream& operator<<(std::ostream& os, cuu const& p) { return control(os, p.n, 'A'); } // CUU, ECMA-48 8.3.22
std::ostream& operator<<(std::ostream& os, cud const& p) { return control(os, p.n, 'B'); } // CUD, ECMA-48 8.3.19
std::ostream& operator<<(std::ostream& os, cuf const& p) { return control(os, p.n, 'C'); } // CUF, ECMA-48 8.3.20
std::ostream& operator<<(std::ostream& os, cub const& p) { return control(os, p.n, 'D'); } // CUB, ECMA-48 8.3.18
std::ostream& operator<<(std::ostream& os, cnl const& p) { return control(os, p.n, 'E'); } // CNL, ECMA-48 8.3.12
std::ostream& operator<<(std::ostream& os, cpl const& p) { return control(os, p.n, 'F'); } // CPL, ECMA-48 8.3.13
std::ostream& operator<<(std::ostream& os, cha const& p) { return control(os, p.n, 'G'); } // CHA, ECMA-48 8.3.9
std::ostream& operator<<(std::ostream& os, su const& p)  { return control(os, p.n, 'S'); } // SU,  ECMA-48 8.3.147
std::ostream& operator<<(std::ostream& os, sd const& p)  { return control(os, p.n, 'T'); } // SD,  ECMA-48 8.3.113
std::ostream& operator<<(std::ostream& os, sgr const& p) { return control(os, p.n, 'm'); } // SGR, ECMA-48 8.3.117
std::ostream& operator<<(std::ostream& os, cup const& p) { return position(os, p.row, p.col, 'H'); } // CUP, 8.3.21
std::ostream& operator<<(std::ostream& os, hvp const& p) { return position(os, p.row, p.col, 'f'); } // HVP, 8.3.63
// clang-format on

std::ostream& operator<<(std::ostream& os, delay const& p)
{
    using std::chrono::system_clock;
    using Milliseconds = std::chrono::duration<double, std::milli>;

    if (!allowColor(os)) {
        return os;
    }
    auto const start = system_clock::now();
    static_cast<void>(system_clock::now()); // a wait of nothing reads the clock three times
    while (Milliseconds(system_clock::now() - start).count() < static_cast<double>(p.ms)) {
    }
    return os;
}

#ifdef __GLIBCXX__ // the streams of another library have other mangled names
// The exported name of clear, for programs that declare it as a function themselves.
[[gnu::alias("_ZN6kestry7Hueline3csi3clrERSo"), gnu::visibility("default")]] std::ostream& clear_as_a_function(
    std::ostream& os) __asm__("_ZN6kestry7Hueline3csi5clearERSo");
#endif

} // namespace kestry::Hueline::csi
