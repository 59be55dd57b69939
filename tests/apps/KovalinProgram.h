#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

namespace kovalin::test {

/// What a finished program left behind.
struct ProgramResult {
    int exitCode = -1; // -1 when it crashed or didn't end
    QByteArray output;
    QByteArray errors;

    /// The output's lines as JSON objects; one that is none is an empty object.
    [[nodiscard]] QList<QJsonObject> objects() const;
};

/// Runs `kovalin` with the arguments and the input, to its end.
[[nodiscard]] ProgramResult runKovalin(const QStringList& arguments, const QByteArray& input = {});

/// Runs a shell script that finds the program in $KOVALIN, to its end.
[[nodiscard]] ProgramResult runShell(const QString& script);

/// `kovalin` as a running process.
class RunningKovalin final {
public:
    explicit RunningKovalin(const QStringList& arguments);
    ~RunningKovalin();
    Q_DISABLE_COPY_MOVE(RunningKovalin)

    /// Sends a line and waits for one; empty when none comes.
    [[nodiscard]] QByteArray ask(const QByteArray& line);

    [[nodiscard]] qint64 processId() const { return _process.processId(); }

private:
    QProcess _process;
};

/// The packs document of the examples.
[[nodiscard]] QString examplePacks();

/// The search model of the examples.
[[nodiscard]] QString exampleModel();

/// A folder with files of a test's own, which go with it.
class Files final {
public:
    /// Writes a file; returns its path.
    QString write(const QString& name, const QByteArray& content);
    [[nodiscard]] QString path(const QString& name) const;

private:
    QTemporaryDir _folder;
};

} // namespace kovalin::test
