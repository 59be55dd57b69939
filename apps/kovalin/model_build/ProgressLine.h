#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace kovalin::cli {

/// A line on standard error that tells how far the program is. Without a terminal there it does nothing. One thread.
class ProgressLine final {
public:
    ProgressLine();
    /// Wipes the line.
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Draws the line anew, at most ten times a second; the text is only asked for then. It is ASCII and shorter than a terminal is
    /// wide.
    void update(const std::function<std::string()>& text);

private:
    using Clock = std::chrono::steady_clock;

    bool _isShown;
    Clock::time_point _nextDrawing; // the first one is at once
    std::size_t _width = 0;         // columns that are drawn on
};

} // namespace kovalin::cli
