/// \file
/// Where the workloads write to.
#pragma once

namespace hueline::bench {

/// What standard output is: the answer of isatty(3), and what it costs, depend on it.
enum class Output { terminal, file };

/// Makes the descriptor of standard output a terminal of our own, or a file.
void set_output(Output output);

/// Drops what std::cout is given, so that the insertions are measured and not the terminal. The
/// stream itself stays, and it is the stream that the library asks about.
void discard_cout();

} // namespace hueline::bench
