/// \file
/// What scenes and programs write, on a terminal and in a pipe.
#pragma once

#include <string>
#include <vector>

namespace hueline::pictures {

struct Recording {
    std::string name = {};     ///< Of the picture's file, without ".svg".
    std::string title = {};    ///< For those who do not see the picture.
    std::string code = {};     ///< What wrote it: C++ statements, or a command line.
    std::string language = {}; ///< Of the code.
    std::string terminal = {}; ///< The bytes that a terminal received.
    std::string pipe = {};     ///< The bytes that a pipe received.
    int frame_ms = 0;          ///< As in Scene.
    int cols = 80;             ///< As in Scene.
    int rows = 0;              ///< As in Scene.
};

/// Runs everything that there are pictures of, each in a process of its own, on terminals and on pipes. Throws
/// std::runtime_error if one of them fails.
std::vector<Recording> record_all();

/// The roles of both interfaces, "stream" and "string", a line for each.
std::vector<Recording> record_roles();

} // namespace hueline::pictures
