#include "kestry/hueline_stream.hpp"

#include "stream/state.hpp"

#include <cerrno>
#include <cstdio>
#include <iostream> // its std::ios_base::Init is the first thing constructed at load
#include <sstream>

#include <unistd.h>

namespace kestry::detail {

namespace {

// The index of the colorize word in every stream's iword array. A word other than 0 wants colour.
int const _colorizeIndex = std::ios_base::xalloc();

bool _colorActive = false; // the gate found a terminal last, or a colour guard said so
bool _noFrills = false;
bool _forcedColor = false; // a UseColorMode was constructed, and no NoColorMode since

} // namespace

AttributeState _currentAttributes;

namespace {

// Built between the two records and destroyed between them; nothing reads or writes it.
std::stringstream _scratchStream;

} // namespace

AttributeState _savedAttributes;

namespace {

// Streams are told apart by address: one that shares std::cout's buffer may not be on a terminal.
std::FILE* stdio_stream(std::ostream const& os)
{
    if (&os == &std::cout) {
        return stdout;
    }
    return &os == &std::cerr || &os == &std::clog ? stderr : nullptr;
}

bool is_terminal(std::FILE* file)
{
    if (file == nullptr) {
        return false;
    }
    int const before = errno;
    bool const answer = isatty(fileno(file)) != 0;
    errno = before;
    return answer;
}

} // namespace

bool allowColor(std::ostream& os)
{
    _colorActive = is_terminal(stdio_stream(os));
    return _colorActive && !_noFrills && os.iword(_colorizeIndex) != 0;
}

} // namespace kestry::detail

namespace kestry::Hueline {

using namespace detail;

std::ostream& colorize(std::ostream& os)
{
    os.iword(_colorizeIndex) = 1;
    return os;
}

std::ostream& nocolorize(std::ostream& os)
{
    os.iword(_colorizeIndex) = 0;
    return os;
}

bool _isUsingColor() { return (_colorActive || _forcedColor) && !_noFrills; }

void _setNoFrillsMode(bool on) { _noFrills = on; }

bool _getNoFrillsMode() { return _noFrills; }

std::ostream& color_mode_state(std::ostream& os)
{
    bool const allowed = allowColor(os);
    os << " use color mode is " << (allowed ? "on" : "off") << " " << std::endl;
    if (!allowed) {
        os << " (you should not be seeing color) " << std::endl;
    }
    return os;
}

std::ostream& frills_mode_state(std::ostream& os)
{
    return os << " no frills mode is " << (_noFrills ? "on" : "off") << " " << std::endl;
}

UseColorMode::UseColorMode()
{
    _forcedColor = true;
    _colorActive = true;
    colorize(std::cout);
}

UseColorMode::~UseColorMode()
{
    if (_colorActive) {
        nocolorize(std::cout);
    }
}

NoColorMode::NoColorMode()
{
    _forcedColor = false;
    _colorActive = false;
    nocolorize(std::cout);
}

NoColorMode::~NoColorMode()
{
    if (_colorActive) {
        colorize(std::cout);
    }
}

NoFrillsMode::NoFrillsMode() : saved(_noFrills) { _noFrills = true; }

NoFrillsMode::~NoFrillsMode() { _noFrills = saved; }

UseFrillsMode::UseFrillsMode() : saved(_noFrills) { _noFrills = false; }

UseFrillsMode::~UseFrillsMode() { _noFrills = saved; }

} // namespace kestry::Hueline
