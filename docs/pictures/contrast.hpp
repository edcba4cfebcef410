/// \file
/// How easy text is to read.
#pragma once

#include "terminal.hpp"

namespace hueline::pictures {

/// What the Web Content Accessibility Guidelines ask of text of ordinary size, at level AA.
double constexpr legible = 4.5;

/// Returns the contrast ratio of two colours as those guidelines (WCAG 2.1) define it: from 1, the same colour, to 21, black
/// and white.
double contrast(Rgb one, Rgb other);

} // namespace hueline::pictures
