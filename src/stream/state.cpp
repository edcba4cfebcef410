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

bool _noFrills = false;
bool _forcedColor = false; // a UseColorMode was constructed, and no NoColorMode since

} // namespace

std::ostream* const standard_out = &std::cout;
std::ostream* const standard_err = &std::cerr;
std::ostream* const standard_log = &std::clog;

bool _colorActive = false;

AttributeState _currentAttributes;

namespace {

// Built between the two records and destroyed between them; nothing reads or writes it.
std::stringstream _scratchStream;

} // namespace

AttributeState _savedAttributes;

namespace {

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

// The gate, for a standard stream.
inline bool passes(std::ostream& os)
{
    _colorActive = is_terminal(&os == standard_out ? stdout : stderr);
    return _colorActive && !_noFrills && os.iword(_colorizeIndex) != 0;
}

} // namespace

bool allow_color_on_standard(std::ostream& os) { return passes(os); }

std::ostream& compose_on_standard(std::ostream& os) { return passes(os) ? compose(os) : os; }

std::ostream& recompose_on_standard(std::ostream& os, std::string AttributeState::*slot, std::string_view sequence)
{
    return passes(os) ? recompose(os, slot, sequence) : os;
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
    colorize(*standard_out);
}

UseColorMode::~UseColorMode()
{
    if (_colorActive) {
        nocolorize(*standard_out);
    }
}

NoColorMode::NoColorMode()
{
    _forcedColor = false;
    _colorActive = false;
    nocolorize(*standard_out);
}

NoColorMode::~NoColorMode()
{
    if (_colorActive) {
        colorize(*standard_out);
    }
}

NoFrillsMode::NoFrillsMode() : saved(_noFrills) { _noFrills = true; }

NoFrillsMode::~NoFrillsMode() { _noFrills = saved; }

UseFrillsMode::UseFrillsMode() : saved(_noFrills) { _noFrills = false; }

UseFrillsMode::~UseFrillsMode() { _noFrills = saved; }

} // namespace kestry::Hueline
