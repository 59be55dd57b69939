#include "kovalin/Queries.h"

#include "shared/CommandLine.h"
#include "shared/StandardStreams.h"

#include <vector>

namespace kovalin::cli {

Queries::Queries(CLI::App& command, const std::string& description)
{
    command.footer("Without a QUERY argument queries are read from standard input, one a line.\n"
                   "A QUERY that begins with \"-\" goes behind \"--\".");
    const auto takeAny = [](const std::vector<std::string>&) {
    };
    _option = command.add_option_function<std::vector<std::string>>("QUERY", takeAny, description)->type_name("");
}

void Queries::forEach(const std::function<void(const std::string& query)>& answer) const
{
    if (!_option->results().empty()) {
        for (const std::string& query : _option->results()) {
            answer(argumentAsGiven(query));
        }
        return;
    }
    while (const auto query = readInputLine()) {
        answer(*query);
    }
}

} // namespace kovalin::cli
