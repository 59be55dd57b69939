#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

namespace kovalin::test {

/// `kovalin-backend` as a running process. Main thread.
class BackendProgram final {
public:
    explicit BackendProgram(const QStringList& arguments)
    {
        _process.start(QStringLiteral(KOVALIN_BACKEND_PROGRAM), arguments);
    }

    ~BackendProgram()
    {
        _process.kill(); // where a test has failed before the end
        _process.waitForFinished(capMillis);
    }
    Q_DISABLE_COPY_MOVE(BackendProgram)

    /// The next line of its output, without its end; empty when it has ended before.
    [[nodiscard]] QByteArray readLine()
    {
        while (!_process.canReadLine() && _process.waitForReadyRead(capMillis)) {
        }
        return _process.canReadLine() ? _process.readLine().chopped(1) : QByteArray();
    }

    /// The next line of its errors, without its end; empty when it has ended before.
    [[nodiscard]] QByteArray readErrorLine()
    {
        _process.setReadChannel(QProcess::StandardError);
        QByteArray line = readLine();
        _process.setReadChannel(QProcess::StandardOutput);
        return line;
    }

    /// Reads the line that says where it listens.
    [[nodiscard]] QUrl readAddress()
    {
        const QByteArray line = readLine();
        const QByteArray beginning = "listening on ";
        return line.startsWith(beginning) ? QUrl(QString::fromLatin1(line.sliced(beginning.size()))) : QUrl();
    }

    void write(const QByteArray& input)
    {
        _process.write(input);
        while (_process.bytesToWrite() > 0 && _process.waitForBytesWritten(capMillis)) {
        }
    }

    void closeInput() { _process.closeWriteChannel(); }
    [[nodiscard]] qint64 processId() const { return _process.processId(); }

    /// Waits for its end; -1 when it crashed.
    [[nodiscard]] int exitCode()
    {
        _process.waitForFinished(capMillis);
        const bool didExit = _process.state() == QProcess::NotRunning && _process.exitStatus() == QProcess::NormalExit;
        return didExit ? _process.exitCode() : -1;
    }

    /// What it wrote on standard error and wasn't read. Once it has ended.
    [[nodiscard]] QByteArray errors() { return _process.readAllStandardError(); }
    [[nodiscard]] QByteArray output() { return _process.readAllStandardOutput(); }

private:
    static constexpr int capMillis = 120'000; // against a hang alone

    QProcess _process;
};

} // namespace kovalin::test
