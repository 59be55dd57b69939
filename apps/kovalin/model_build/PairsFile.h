#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kovalin::cli {

/// What people typed and which comic they chose then, so many times.
struct Pair {
    std::string_view text;
    std::int32_t comic;
    std::int64_t count; // positive
};

/// Reads pairs line by line: text, comic id and count with a tab between them. Holds one line at a time. All operations
/// throw BadInput, which names the file, for a file that can't be read and for a line that is no pair. One thread.
class PairsFile final {
public:
    /// The path "-" is standard input.
    explicit PairsFile(const std::string& path);

    /// The next pair, whose text lives until the next call; nullopt after the last.
    [[nodiscard]] std::optional<Pair> next();

    /// How the file is called in messages.
    [[nodiscard]] const std::string& name() const { return _name; }

    /// How many lines have been read.
    [[nodiscard]] std::uint64_t lineCount() const { return _lineCount; }

    /// Throws BadInput about the line that was read last.
    [[noreturn]] void failAtLine(const std::string& fault) const;

private:
    struct Close {
        void operator()(std::FILE* file) const;
    };

    [[nodiscard]] std::optional<std::string_view> nextLine();
    [[nodiscard]] bool fill();
    [[noreturn]] void fail(int error) const;

    std::string _name;
    std::unique_ptr<std::FILE, Close> _file;
    std::vector<char> _buffer;
    std::size_t _position = 0; // in _buffer: what has been taken out of it
    std::size_t _filled = 0;
    std::string _line;
    std::uint64_t _lineCount = 0;
};

} // namespace kovalin::cli
