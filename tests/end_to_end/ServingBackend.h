#pragma once

#include "support/ChildProcess.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>
#include <vector>

namespace kovalin::backend {
class Backend;
} // namespace kovalin::backend

namespace kovalin::test {

/// The development server, wherever it runs.
class ServingBackend {
public:
    virtual ~ServingBackend();

    [[nodiscard]] virtual QString baseUrl() const = 0;

    /// "PATH RULE", as "/api/configs 503"; holds when this returns.
    virtual void setAnswer(const QByteArray& rule) = 0;

    /// The targets of all requests so far.
    [[nodiscard]] virtual std::vector<QByteArray> requests() = 0;
};

/// In this process.
class BackendHere final : public ServingBackend {
public:
    explicit BackendHere(const QString& contentFolder);
    ~BackendHere() override;

    [[nodiscard]] QString baseUrl() const override;
    void setAnswer(const QByteArray& rule) override;
    [[nodiscard]] std::vector<QByteArray> requests() override;

private:
    const std::unique_ptr<backend::Backend> _backend;
};

/// The program, which is told its rules over its standard input and tells its requests on its standard output.
class BackendProgram final : public ServingBackend {
public:
    explicit BackendProgram(const QString& contentFolder);
    ~BackendProgram() override;

    [[nodiscard]] QString baseUrl() const override;
    void setAnswer(const QByteArray& rule) override;
    [[nodiscard]] std::vector<QByteArray> requests() override;

private:
    /// The next line but for those of requests, which are kept.
    QByteArray nextLine();

    ChildProcess _process;
    QString _baseUrl;
    std::vector<QByteArray> _requests;
};

} // namespace kovalin::test
