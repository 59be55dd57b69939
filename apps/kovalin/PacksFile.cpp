#include "kovalin/PacksFile.h"

#include "kovalin/PacksDocumentReader.h"
#include "shared/BadInput.h"

#include <cerrno>
#include <cstdio>
#include <istream>
#include <memory>
#include <streambuf>
#include <system_error>
#include <vector>

namespace kovalin::cli {

namespace {

constexpr std::size_t bufferSize = 64 * 1024; // bytes

/// Reads a file from its start to its end and notes what happened on the way.
class FileBuffer final : public std::streambuf {
public:
    explicit FileBuffer(const std::string& path)
        : _file(std::fopen(path.c_str(), "rb"))
        , _buffer(bufferSize)
    {
        if (!_file) {
            _error = errno;
        }
    }

    /// What stopped the reading, as an errno number; 0 for nothing.
    [[nodiscard]] int error() const { return _error; }

    /// Whether all has been read and more was asked for.
    [[nodiscard]] bool isAtEnd() const { return _isAtEnd; }

    /// How many bytes have been read.
    [[nodiscard]] std::size_t size() const { return _size; }

    /// How many of them have been taken out.
    [[nodiscard]] std::size_t position() const { return _size - static_cast<std::size_t>(egptr() - gptr()); }

protected:
    int_type underflow() override
    {
        const std::size_t count = _file ? std::fread(_buffer.data(), 1, _buffer.size(), _file.get()) : 0;
        if (count == 0) {
            if (_file && std::ferror(_file.get()) != 0) {
                _error = errno;
            }
            _isAtEnd = true;
            return traits_type::eof();
        }
        _size += count;
        setg(_buffer.data(), _buffer.data(), _buffer.data() + count);
        return traits_type::to_int_type(_buffer.front());
    }

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Close> _file;
    std::vector<char> _buffer;
    std::size_t _size = 0;
    int _error = 0;
    bool _isAtEnd = false;
};

/// What the parser has to say, without the place and the text that it was reading.
std::string describe(const PacksDocumentReader::SyntaxError& error)
{
    if (error.text.find("ill-formed UTF-8") != std::string::npos) {
        return "not valid UTF-8";
    }
    const auto lead = error.text.find(" - ");
    if (lead == std::string::npos) {
        return "not JSON: number out of range";
    }
    return "not JSON: " + error.text.substr(lead + 3, error.text.find(';', lead) - lead - 3);
}

/// The parser takes a zero byte for the end of its input; to a file it is a byte like any other.
std::string zeroByteFault(const FileBuffer& file)
{
    return "not JSON: unexpected zero byte at byte " + std::to_string(file.position());
}

std::string syntaxFault(const PacksDocumentReader::SyntaxError& error, const FileBuffer& file)
{
    const std::string fault = describe(error);
    // A number is only known to be over by looking one byte ahead, so the end may have been seen and not be the fault.
    if (file.isAtEnd() && fault.find("unexpected number literal") == std::string::npos) {
        return "ends too early, at byte " + std::to_string(file.size());
    }
    if (!file.isAtEnd() && fault.find("unexpected end of input") != std::string::npos) {
        return zeroByteFault(file);
    }
    return fault + " at byte " + std::to_string(error.position);
}

} // namespace

KovalinPackList readPacksFile(const std::string& path)
{
    const auto fail = [&path](const std::string& fault) {
        throw BadInput(path + ": " + fault);
    };

    FileBuffer file(path);
    PacksDocumentReader reader;
    if (file.error() == 0) {
        std::istream stream(&file);
        reader.read(stream);
    }
    if (file.error() != 0) {
        fail(std::generic_category().message(file.error()));
    }
    if (file.size() == 0) {
        fail("is empty");
    }
    if (const auto& error = reader.syntaxError()) {
        fail(syntaxFault(*error, file));
    }
    if (!reader.isObject()) {
        fail("is no JSON object");
    }
    if (!file.isAtEnd()) {
        fail(zeroByteFault(file));
    }
    auto packs = reader.takePacks();
    if (!packs) {
        fail("has no \"packs\" list");
    }
    return *std::move(packs);
}

} // namespace kovalin::cli
