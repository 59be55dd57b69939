#include "kovalin/model_build/ProgressLine.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace kovalin::cli {

namespace {

constexpr std::chrono::milliseconds drawingInterval(100);

void write(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

} // namespace

ProgressLine::ProgressLine()
    : _isShown(::isatty(STDERR_FILENO) != 0)
{
}

ProgressLine::~ProgressLine()
{
    if (_width > 0) {
        write('\r' + std::string(_width, ' ') + '\r');
    }
}

void ProgressLine::update(const std::function<std::string()>& text)
{
    if (!_isShown) {
        return;
    }
    const auto now = Clock::now();
    if (now >= _nextDrawing) {
        _nextDrawing = now + drawingInterval;
        const std::string line = text();
        write('\r' + line + std::string(_width > line.size() ? _width - line.size() : 0, ' '));
        _width = std::max(_width, line.size());
    }
}

} // namespace kovalin::cli
