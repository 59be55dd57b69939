#include "end_to_end/ServingBackend.h"

#include "kovalin-backend/AnswerRule.h"
#include "kovalin-backend/Backend.h"

#include <stdexcept>
#include <variant>

namespace kovalin::test {

ServingBackend::~ServingBackend() = default;

BackendHere::BackendHere(const QString& contentFolder)
    : _backend(std::make_unique<backend::Backend>(backend::BackendOptions{.contentFolder = contentFolder}))
{
}

BackendHere::~BackendHere() = default;

QString BackendHere::baseUrl() const
{
    return _backend->baseUrl().toString();
}

void BackendHere::setAnswer(const QByteArray& rule)
{
    _backend->setAnswer(std::get<backend::PathRule>(backend::PathRule::fromText(rule)));
}

std::vector<QByteArray> BackendHere::requests()
{
    std::vector<QByteArray> targets;
    for (const auto& request : _backend->requests()) {
        targets.push_back(request.target());
    }
    return targets;
}

BackendProgram::BackendProgram(const QString& contentFolder)
    : _process(QStringLiteral(KOVALIN_BACKEND_PROGRAM),
               {QStringLiteral("--content"), contentFolder, QStringLiteral("--until-eof")})
{
    const QByteArray line = nextLine();
    const QByteArray leadIn = "listening on ";
    if (!line.startsWith(leadIn)) {
        throw std::runtime_error("the backend says " + line.toStdString());
    }
    _baseUrl = QString::fromLatin1(line.mid(leadIn.size()));
}

BackendProgram::~BackendProgram()
{
    _process.closeInput();
    _process.waitForExit();
}

QString BackendProgram::baseUrl() const
{
    return _baseUrl;
}

void BackendProgram::setAnswer(const QByteArray& rule)
{
    _process.write("backend " + rule + '\n');
    if (const QByteArray line = nextLine(); line != "ok") {
        throw std::runtime_error("the backend says " + line.toStdString());
    }
}

std::vector<QByteArray> BackendProgram::requests()
{
    setAnswer("/none ok"); // whatever arrived before has been told by then
    return _requests;
}

QByteArray BackendProgram::nextLine()
{
    while (true) {
        const QByteArray line = _process.readLine().value_or(QByteArray()).trimmed();
        if (!line.startsWith("GET ") && !line.startsWith("POST ")) {
            return line;
        }
        _requests.push_back(line.mid(line.indexOf(' ') + 1));
    }
}

} // namespace kovalin::test
