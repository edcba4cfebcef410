/// \file
/// What the names of the kit in docs/coming-from.md take for granted.
#pragma once

#include "kestry/kit/hexview.hpp"
#include "kestry/kit/line.hpp"
#include "kestry/kit/policy.hpp"
#include "kestry/kit/progress.hpp"
#include "kestry/kit/style.hpp"
#include "kestry/kit/text.hpp"

#include "support/testing.hpp"

using namespace kestry::kit;

namespace {

std::string const text;
std::vector<std::string> const names;
color_policy const policy = color_policy::from_environment();
progress::multi_progress group({.shown = progress::mode::off});
progress::bar const bar = group.add({.message = text});

// A style shows in text.
[[maybe_unused]] void show(std::ostream& os, style const& s) { os << styled("x", s); }
[[maybe_unused]] void show(std::ostream& os, std::ostream& (*manipulator)(std::ostream&)) { os << manipulator; }

} // namespace
