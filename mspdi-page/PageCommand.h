#pragma once

/// The command mspdi-page: reads the command line, writes the page, and prints the result to standard error.
/// @return the exit status: 0 when the page was written, 1 when it was not, 2 for a wrong use.
[[nodiscard]] int runPageCommand(int argc, const char* const* argv);
