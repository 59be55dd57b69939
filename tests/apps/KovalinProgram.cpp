#include "apps/KovalinProgram.h"

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QProcessEnvironment>

#include <chrono>
#include <stdexcept>

namespace kovalin::test {

namespace {

constexpr int capMillis = 300'000; // against a hang alone

ProgramResult finish(QProcess& process, const QByteArray& input)
{
    process.write(input);
    process.closeWriteChannel();
    ProgramResult result;
    if (process.waitForFinished(capMillis) && process.exitStatus() == QProcess::NormalExit) {
        result.exitCode = process.exitCode();
    }
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

} // namespace

QList<QJsonObject> ProgramResult::objects() const
{
    QList<QJsonObject> objects;
    QList<QByteArray> lines = output.split('\n');
    lines.removeLast(); // what follows the last line end
    for (const QByteArray& line : lines) {
        objects.append(QJsonDocument::fromJson(line).object());
    }
    return objects;
}

ProgramResult runKovalin(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.start(QStringLiteral(KOVALIN_PROGRAM), arguments);
    return finish(process, input);
}

ProgramResult runShell(const QString& script)
{
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("KOVALIN"), QStringLiteral(KOVALIN_PROGRAM));
    environment.insert(QStringLiteral("PACKS"), examplePacks());
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), script});
    return finish(process, {});
}

RunningKovalin::RunningKovalin(const QStringList& arguments)
{
    _process.start(QStringLiteral(KOVALIN_PROGRAM), arguments);
}

RunningKovalin::~RunningKovalin()
{
    _process.closeWriteChannel();
    _process.waitForFinished(capMillis);
}

QByteArray RunningKovalin::ask(const QByteArray& line)
{
    _process.write(line + '\n');
    while (!_process.canReadLine() && _process.waitForReadyRead(capMillis)) {
    }
    return _process.canReadLine() ? _process.readLine() : QByteArray();
}

QString examplePacks()
{
    return QStringLiteral(KOVALIN_EXAMPLE_PACKS);
}

QString exampleModel()
{
    return QStringLiteral(KOVALIN_EXAMPLE_MODEL);
}

QString Files::write(const QString& name, const QByteArray& content)
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        throw std::runtime_error("can't write a test's file");
    }
    return file.fileName();
}

QString Files::path(const QString& name) const
{
    return _folder.filePath(name);
}

} // namespace kovalin::test
