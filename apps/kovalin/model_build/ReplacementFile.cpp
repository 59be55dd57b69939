#include "kovalin/model_build/ReplacementFile.h"

#include "shared/BadInput.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace kovalin::cli {

namespace {

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

/// Makes a file that wasn't there, beside the path; `created` is where.
File createBeside(const std::string& path, std::string& created)
{
    for (int attempt = 0;; ++attempt) {
        std::string candidate = path + '.' + std::to_string(::getpid()) + '-' + std::to_string(attempt) + ".tmp";
        File file(std::fopen(candidate.c_str(), "wbx"));
        if (file) {
            created = std::move(candidate);
        }
        if (file || errno != EEXIST) {
            return file;
        }
    }
}

} // namespace

ReplacementFile::ReplacementFile(const std::string& path)
    : _name(path)
    , _path(path)
{
    if (path.empty()) {
        fail(ENOENT);
    }
    std::error_code error;
    if (const auto resolved = std::filesystem::canonical(path, error); !error) {
        _path = resolved.string();
    }
    struct stat status {};
    if (::stat(_path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) {
            fail(EISDIR);
        }
        if (!S_ISREG(status.st_mode)) {
            throw BadInput(_name + ": is no regular file");
        }
        if (::access(_path.c_str(), W_OK) != 0) {
            fail(errno);
        }
    }
    const auto folder = std::filesystem::path(_path).parent_path() / "."; // no file passes for a folder like that
    if (::access(folder.c_str(), W_OK | X_OK) != 0) {
        fail(errno);
    }
}

ReplacementFile::~ReplacementFile()
{
    if (!_temporaryPath.empty()) {
        std::remove(_temporaryPath.c_str());
    }
}

void ReplacementFile::write(std::span<const std::uint8_t> content)
{
    File file = createBeside(_path, _temporaryPath);
    if (!file || std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() ||
        std::fflush(file.get()) != 0 || ::fsync(::fileno(file.get())) != 0) {
        fail(errno);
    }
    struct stat status {};
    if (::stat(_path.c_str(), &status) == 0) {
        constexpr mode_t permissions = 07777;
        // Where the system refuses, the new file has the permissions of any new file.
        static_cast<void>(::fchmod(::fileno(file.get()), status.st_mode & permissions));
    }
    if (std::fclose(file.release()) != 0) {
        fail(errno);
    }
}

void ReplacementFile::replace()
{
    if (std::rename(_temporaryPath.c_str(), _path.c_str()) != 0) {
        fail(errno);
    }
    _temporaryPath.clear();
}

void ReplacementFile::fail(int error) const
{
    throw BadInput(_name + ": " + std::generic_category().message(error));
}

} // namespace kovalin::cli
