#pragma once

#include "utils/Logging.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace vole::test {

/// Installs itself as the logger and keeps what it hears, until it goes out of scope.
class RecordingLogger final {
public:
    struct Line {
        utils::logging::LogLevel level;
        std::string tag;
        std::string message;

        friend bool operator==(const Line&, const Line&) = default;
    };

    RecordingLogger() { utils::logging::setExternalLogger(_logger); }
    ~RecordingLogger() { utils::logging::setExternalLogger(nullptr); }
    RecordingLogger(const RecordingLogger&) = delete;
    RecordingLogger& operator=(const RecordingLogger&) = delete;

    [[nodiscard]] std::vector<Line> lines() const { return _logger->take(); }

    [[nodiscard]] std::vector<std::string> messages() const
    {
        std::vector<std::string> messages;
        for (const Line& line : lines()) {
            messages.push_back(line.message);
        }
        return messages;
    }

private:
    class Recorder final : public utils::logging::Logger {
    public:
        void log(utils::logging::LogLevel level, const std::string& tag, const std::string& message) override
        {
            const std::scoped_lock lock(_mutex);
            _lines.push_back({level, tag, message});
        }
        std::vector<Line> take()
        {
            const std::scoped_lock lock(_mutex);
            return _lines;
        }

    private:
        std::mutex _mutex;
        std::vector<Line> _lines;
    };

    std::shared_ptr<Recorder> _logger = std::make_shared<Recorder>();
};

} // namespace vole::test
