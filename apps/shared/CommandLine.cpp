#include "shared/CommandLine.h"

#include "shared/StandardStreams.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <sstream>
#include <system_error>

namespace kovalin::cli {

namespace {

constexpr char mark = '\0';

bool hasMeaningToParser(const std::string& argument)
{
    return argument == "++" || (argument.starts_with('[') && argument.ends_with(']'));
}

} // namespace

std::vector<std::string> argumentsForParser(int argc, const char* const* argv)
{
    std::vector<std::string> arguments;
    for (int i = argc - 1; i > 0; --i) {
        std::string& argument = arguments.emplace_back(argv[i]);
        if (hasMeaningToParser(argument)) {
            argument.push_back(mark);
        }
    }
    return arguments;
}

std::string argumentAsGiven(const std::string& parsed)
{
    return parsed.ends_with(mark) ? parsed.substr(0, parsed.size() - 1) : parsed;
}

std::string countFault(const std::string& parsed)
{
    std::int32_t count = -1;
    const char* const end = parsed.data() + parsed.size();
    const auto [last, error] = std::from_chars(parsed.data(), end, count);
    if (error == std::errc() && last == end && count >= 0) {
        return {};
    }
    return "must be a whole number from 0 to " + std::to_string(std::numeric_limits<std::int32_t>::max()) + ", not " +
           argumentAsGiven(parsed);
}

ExitCode answerParser(const CLI::App& program, const CLI::ParseError& error, const std::string& fault)
{
    if (error.get_exit_code() == 0) {
        std::ostringstream text;
        program.exit(error, text, text);
        writeOutput(text.str());
        flushOutput();
        return Ok;
    }
    writeError(fault.empty() ? std::string(error.what()) : fault);
    const std::string usage = program.help();
    std::fwrite(usage.data(), 1, usage.size(), stderr);
    return BadUsage;
}

} // namespace kovalin::cli
