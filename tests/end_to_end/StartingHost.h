#pragma once

#include "end_to_end/SearchStart.h"
#include "support/ChildProcess.h"

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

#include <memory>
#include <optional>

namespace kovalin::test {

/// A host application with a caches directory, which can be started any number of times.
class StartingHost {
public:
    virtual ~StartingHost();

    /// With `fileSizeLimit` no file can grow beyond so many bytes.
    [[nodiscard]] virtual SearchStart start(const QString& baseUrl,
                                            std::optional<int> fileSizeLimit = std::nullopt) = 0;

    /// The caches directory, where nothing stands at first.
    [[nodiscard]] virtual QString folder() const = 0;
    [[nodiscard]] QString modelPath(int version) const;
    [[nodiscard]] QString recordPath() const;
};

/// In this process, so with the one caches directory of the process.
class HostHere final : public StartingHost {
public:
    HostHere();

    [[nodiscard]] SearchStart start(const QString& baseUrl, std::optional<int> fileSizeLimit) override;
    [[nodiscard]] QString folder() const override;
};

/// In a process of its own for each start.
class HostProgram final : public StartingHost {
public:
    [[nodiscard]] SearchStart start(const QString& baseUrl, std::optional<int> fileSizeLimit) override;
    [[nodiscard]] QString folder() const override { return _folder.path(); }

    /// A start that the caller ends, or sees to its end.
    [[nodiscard]] std::unique_ptr<ChildProcess> beginStart(const QString& baseUrl);

private:
    QTemporaryDir _folder;
};

} // namespace kovalin::test
