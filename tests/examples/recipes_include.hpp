/// \file
/// What the snippets of docs/recipes.md take for granted.
#pragma once

#include "kestry/kit/hexview.hpp"
#include "kestry/kit/line.hpp"
#include "kestry/kit/policy.hpp"
#include "kestry/kit/style.hpp"
#include "kestry/kit/text.hpp"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <mutex>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <sys/ioctl.h>
#include <unistd.h>
