#include "kovalin/model_build/PairsFile.h"

#include "shared/BadInput.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <system_error>

namespace kovalin::cli {

namespace {

constexpr std::size_t bufferSize = 64 * 1024;             // bytes
constexpr std::size_t longestLine = std::size_t{1} << 20; // bytes: far more than anybody types, and little to hold

/// The number that the whole text is; std::errc() for success.
template <typename Number>
std::errc parse(std::string_view text, Number& number)
{
    const char* const end = text.data() + text.size();
    const auto [parsedEnd, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && parsedEnd != end ? std::errc::invalid_argument : error;
}

/// The fields of a line; nullopt unless they are three.
std::optional<std::array<std::string_view, 3>> fieldsOf(std::string_view line)
{
    const auto first = line.find('\t');
    const auto second = first == std::string_view::npos ? first : line.find('\t', first + 1);
    if (second == std::string_view::npos || line.find('\t', second + 1) != std::string_view::npos) {
        return std::nullopt;
    }
    return std::array{line.substr(0, first), line.substr(first + 1, second - first - 1), line.substr(second + 1)};
}

} // namespace

PairsFile::PairsFile(const std::string& path)
    : _name(path == "-" ? "standard input" : path)
    , _file(path == "-" ? stdin : std::fopen(path.c_str(), "rb"))
    , _buffer(bufferSize)
{
    if (!_file) {
        fail(errno);
    }
}

std::optional<Pair> PairsFile::next()
{
    const auto line = nextLine();
    if (!line) {
        return std::nullopt;
    }
    const auto fields = fieldsOf(*line);
    if (!fields) {
        failAtLine("must have three fields, text, comic id and count, with a tab between them");
    }
    Pair pair{(*fields)[0], 0, 0};
    if (parse((*fields)[1], pair.comic) != std::errc()) {
        failAtLine("the comic id is no 32-bit signed integer");
    }
    const std::errc countError = parse((*fields)[2], pair.count);
    if (countError == std::errc::result_out_of_range && !(*fields)[2].starts_with('-')) {
        failAtLine("the count is too large");
    }
    if (countError != std::errc() || pair.count <= 0) {
        failAtLine("the count is no positive integer");
    }
    return pair;
}

void PairsFile::failAtLine(const std::string& fault) const
{
    throw BadInput(_name + ": line " + std::to_string(_lineCount) + ": " + fault);
}

void PairsFile::Close::operator()(std::FILE* file) const
{
    if (file != stdin) {
        std::fclose(file);
    }
}

/// Without its end, which is "\n", "\r\n" or that of the file.
std::optional<std::string_view> PairsFile::nextLine()
{
    if (_position == _filled && !fill()) {
        return std::nullopt;
    }
    ++_lineCount;
    _line.clear();
    do {
        const char* const begin = _buffer.data() + _position;
        const std::size_t available = _filled - _position;
        const auto* const end = static_cast<const char*>(std::memchr(begin, '\n', available));
        const std::size_t length = end ? static_cast<std::size_t>(end - begin) : available;
        if (length > longestLine - _line.size()) {
            failAtLine("is longer than " + std::to_string(longestLine) + " bytes");
        }
        _line.append(begin, length);
        _position += length + (end ? 1 : 0);
        if (end) {
            break;
        }
    } while (fill());
    if (_line.ends_with('\r')) {
        _line.pop_back();
    }
    return _line;
}

/// Reads on once all has been taken out; false at the end.
bool PairsFile::fill()
{
    _position = 0;
    _filled = std::fread(_buffer.data(), 1, _buffer.size(), _file.get());
    if (_filled == 0 && std::ferror(_file.get()) != 0) {
        fail(errno);
    }
    return _filled > 0;
}

void PairsFile::fail(int error) const
{
    throw BadInput(_name + ": " + std::generic_category().message(error));
}

} // namespace kovalin::cli
