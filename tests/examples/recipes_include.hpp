/// \file
/// What the snippets of docs/recipes.md take for granted.
#pragma once

#include "kestry/kit/hexview.hpp"
#include "kestry/kit/line.hpp"
#include "kestry/kit/policy.hpp"
#include "kestry/kit/style.hpp"
#include "kestry/kit/text.hpp"

#include "support/testing.hpp"

#include <mutex>

#include <sys/ioctl.h>
