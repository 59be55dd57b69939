#include "kovalin/BatchFile.h"

#include "events/EventBatchReader.h"
#include "shared/BadInput.h"

#include <QtCore/QByteArray>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>
#include <utility>
#include <variant>

namespace kovalin::cli {

namespace {

struct Close {
    void operator()(std::FILE* file) const
    {
        if (file != stdin) {
            std::fclose(file);
        }
    }
};

/// Throws BadInput, with the fault alone. Stops behind the longest batch: a device may have no end.
QByteArray readAll(std::FILE* file)
{
    constexpr qsizetype chunkSize = qsizetype(64) * 1024; // bytes
    QByteArray bytes;
    std::size_t count = 0;
    do {
        const qsizetype size = bytes.size();
        bytes.resize(size + chunkSize);
        count = std::fread(bytes.data() + size, 1, chunkSize, file);
        bytes.resize(size + static_cast<qsizetype>(count));
    } while (count > 0 && bytes.size() <= analytics::kMostBatchBytes);
    if (std::ferror(file) != 0) {
        throw BadInput(std::generic_category().message(errno));
    }
    return bytes;
}

/// Throws BadInput, with the fault alone.
analytics::EventBatch readBatch(const std::string& path)
{
    const std::unique_ptr<std::FILE, Close> file(path == "-" ? stdin : std::fopen(path.c_str(), "rb"));
    if (!file) {
        throw BadInput(std::generic_category().message(errno));
    }
    const QByteArray bytes = readAll(file.get());
    if (bytes.isEmpty()) {
        throw BadInput("is empty");
    }
    auto read = analytics::readEventBatch(bytes);
    if (const auto* fault = std::get_if<QString>(&read)) {
        throw BadInput("is no batch of events: " + fault->toStdString());
    }
    return std::get<analytics::EventBatch>(std::move(read));
}

} // namespace

analytics::EventBatch readBatchFile(const std::string& path)
{
    try {
        return readBatch(path);
    } catch (const BadInput& fault) {
        throw BadInput((path == "-" ? std::string("standard input") : path) + ": " + fault.what());
    }
}

} // namespace kovalin::cli
