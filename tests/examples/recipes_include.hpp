/// \file
/// What the snippets of docs/recipes.md take for granted.
#pragma once

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
