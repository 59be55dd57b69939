#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace kovalin::cli {

/// A file's new content, which is written beside it and takes its place as a whole, or not at all. All operations throw
/// BadInput, which names the file, where the system refuses. One thread.
class ReplacementFile final {
public:
    /// Looks whether the file can be replaced, and touches nothing. There needn't be a file yet.
    explicit ReplacementFile(const std::string& path);
    /// Removes what hasn't taken the file's place.
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// To be called once.
    void write(std::span<const std::uint8_t> content);

    /// Where the content has been written.
    [[nodiscard]] const std::string& temporaryPath() const { return _temporaryPath; }

    /// Puts what has been written into the file's place. The file keeps its permissions.
    void replace();

private:
    [[noreturn]] void fail(int error) const;

    std::string _name;          // as it was given
    std::string _path;          // behind symbolic links
    std::string _temporaryPath; // empty where there is nothing to remove
};

} // namespace kovalin::cli
