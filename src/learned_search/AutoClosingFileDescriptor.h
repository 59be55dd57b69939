#pragma once

namespace vole::learned_search {

/// Closes a file descriptor when its scope ends, also one that was never opened: closing -1 does nothing.
class AutoClosingFileDescriptor final {
public:
    explicit AutoClosingFileDescriptor(int descriptor)
        : _descriptor(descriptor)
    {
    }
    ~AutoClosingFileDescriptor();
    AutoClosingFileDescriptor(const AutoClosingFileDescriptor&) = delete;
    AutoClosingFileDescriptor& operator=(const AutoClosingFileDescriptor&) = delete;

    /// Whether opening failed.
    [[nodiscard]] bool failed() const { return _descriptor < 0; }

    [[nodiscard]] int operator()() const { return _descriptor; }

private:
    int _descriptor;
};

} // namespace vole::learned_search
