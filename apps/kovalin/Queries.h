#pragma once

#include <CLI/App.hpp>

#include <functional>
#include <string>

namespace kovalin::cli {

/// The queries of a subcommand: its QUERY arguments or, without any, standard input, one a line.
class Queries final {
public:
    /// Adds QUERY to the subcommand, which must outlive this, and says below its options where queries come from.
    Queries(CLI::App& command, const std::string& description);

    /// Calls with each query as it was given, byte by byte; with a line of standard input as soon as it is there. Only to
    /// be called when the command line has been parsed. Throws what `readInputLine` throws.
    void forEach(const std::function<void(const std::string& query)>& answer) const;

private:
    const CLI::Option* _option;
};

} // namespace kovalin::cli
