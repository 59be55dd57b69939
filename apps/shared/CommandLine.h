#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace kovalin::cli {

/// What the programs return.
enum ExitCode { Ok = 0, BadInputGiven = 1, BadUsage = 2 };

// Some arguments mean something to the command line parser that they don't mean to us: "[a,b]" is a list to it, "++" the
// end of a subcommand. They go through it with a mark that no argument can have, and come out without it.

/// The program's arguments without its name, last first as the parser takes them, marked where necessary.
[[nodiscard]] std::vector<std::string> argumentsForParser(int argc, const char* const* argv);

/// An argument as it was given, from what the parser made of it.
[[nodiscard]] std::string argumentAsGiven(const std::string& parsed);

/// What is wrong with an option's value that has to be a number of things; empty when it is one.
[[nodiscard]] std::string countFault(const std::string& parsed);

/// Ends what the parser has taken for no run: what was asked for, as the help, goes to standard output. Else standard error gets one
/// line on what is wrong, the parser's if `fault` is empty, and the usage.
[[nodiscard]] ExitCode answerParser(const CLI::App& program, const CLI::ParseError& error,
                                    const std::string& fault = {});

} // namespace kovalin::cli
