#include "kestry/hueline_classic.hpp"

#include <ostream>

namespace kestry {

bool Hueline::_useColor = false;
bool Hueline::_noFrillsMode = false;

Hueline::Hueline() : _flipped(false), _savedColor(false), _initialColor(_useColor) {}

Hueline::~Hueline() { _useColor = _initialColor; }

void Hueline::flipColor()
{
    _flipped = true;
    _savedColor = isUsingColor();
    useColor(!_noFrillsMode && !_savedColor);
}

void Hueline::unflipColor()
{
    if (!_flipped) {
        throw "Unflipping when we never flipped in the first place!";
    }
    // Whether colour was in use, not the switch itself: after a flip in no-frills mode it stays off.
    useColor(_savedColor);
}

// An instance function although it changes only the switch of the process: callers hold an object.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void Hueline::useColor(bool on) { _useColor = on; }

bool Hueline::isUsingColor() { return _useColor && !_noFrillsMode; }

void Hueline::setNoFrillsMode(bool on) { _noFrillsMode = on; }

bool Hueline::getNoFrillsMode() { return _noFrillsMode; }

std::string Hueline::hide_cursor() { return isUsingColor() ? "\x1b[?25l" : ""; }

std::string Hueline::show_cursor() { return isUsingColor() ? "\x1b[?25h" : ""; }

std::ostream& operator<<(std::ostream& os, Hueline const& h) { return os << h._text; }

HuelineExceptionInterface::~HuelineExceptionInterface() = default;

UnknownCodeException::~UnknownCodeException() = default;

char const* UnknownCodeException::what() const noexcept { return "UnknownCodeException passed to Hueline"; }

} // namespace kestry
