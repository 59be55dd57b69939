#pragma once

#include <string>
#include <vector>

namespace kovalin::cli {

// Some arguments mean something to the command line parser that they don't mean to us: "[a,b]" is a list to it, "++" the
// end of a subcommand. They go through it with a mark that no argument can have, and come out without it.

/// The program's arguments without its name, last first as the parser takes them, marked where necessary.
[[nodiscard]] std::vector<std::string> argumentsForParser(int argc, const char* const* argv);

/// An argument as it was given, from what the parser made of it.
[[nodiscard]] std::string argumentAsGiven(const std::string& parsed);

/// What is wrong with an option's value that has to be a number of things; empty when it is one.
[[nodiscard]] std::string countFault(const std::string& parsed);

} // namespace kovalin::cli
