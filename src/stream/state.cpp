#include "kestry/hueline_stream.hpp"

#include "stream/state.hpp"

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <sstream>

#include <unistd.h>

namespace kestry::detail {

// Built in this order, and before the static objects of a program: in a static library, the order of
// the object files would decide otherwise.
#define AT_LOAD [[gnu::init_priority(200)]]

namespace {

bool _noFrills = false;
bool _forcedColor = false; // a UseColorMode was constructed, and no NoColorMode since

AT_LOAD std::ios_base::Init const _standardStreams;

// The index of the colorize word in every stream's iword array. A word other than 0 wants colour. Of a
// class, since the order of construction can be given for objects of a class alone.
struct ColorizeIndex {
    int const value = std::ios_base::xalloc();
};
AT_LOAD ColorizeIndex const _colorizeIndex;

} // namespace

std::ostream* const standard_out = &std::cout;
std::ostream* const standard_err = &std::cerr;
std::ostream* const standard_log = &std::clog;

bool _colorActive = false;

constinit AttributeState _currentAttributes;
constinit AttributeState _savedAttributes;

AT_LOAD ColorState _currentColors;

namespace {

// Unused. It keeps its place in the order of construction and destruction.
AT_LOAD std::stringstream _scratchStream;

} // namespace

AT_LOAD ColorState _savedColors;

namespace {

long& colorize_word(std::ostream& os) { return os.iword(_colorizeIndex.value); }

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

bool allowed_on_standard(std::ostream& os)
{
    _colorActive = is_terminal(&os == &std::cout ? stdout : stderr);
    return _colorActive && !_noFrills && colorize_word(os) != 0;
}

} // namespace kestry::detail

namespace kestry::Hueline {

using namespace detail;

std::ostream& colorize(std::ostream& os)
{
    colorize_word(os) = 1;
    return os;
}

std::ostream& nocolorize(std::ostream& os)
{
    colorize_word(os) = 0;
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
