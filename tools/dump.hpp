/// \file
/// The demonstration that is a tool: files in hexadecimal.
#pragma once

#include <string>
#include <vector>

namespace demo {

/// How a file is written.
enum class DumpForm {
    bytes,     ///< Nothing but digits.
    canonical, ///< As hexdump -C: offset, digits and text, in colours of their own where there is colour.
};

/// Writes the files to standard output in hexadecimal, one after the other, sixteen bytes a line.
/// Each starts on a line of its own. "-" is standard input, and so is an empty list.
///
/// A file of any size takes the same memory. While one of more than a mebibyte is dumped, standard
/// error shows how far it is, if it is a terminal that gets colour and no-frills mode is off.
///
/// A file that cannot be read, or not to its end, is named in one line on standard error; the others
/// are dumped all the same. Returns whether all of them were read.
bool dump_files(std::vector<std::string> const& files, DumpForm form);

} // namespace demo
