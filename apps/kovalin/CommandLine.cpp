#include "kovalin/CommandLine.h"

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

} // namespace kovalin::cli
