#include "kits/login/default/Pkce.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QRandomGenerator>

#include <array>

namespace {

QByteArray urlSafe(const QByteArray& bytes)
{
    return bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

} // namespace

QByteArray freshSecret()
{
    std::array<quint32, 8> numbers{};
    QRandomGenerator::system()->fillRange(numbers.data(), static_cast<qsizetype>(numbers.size()));
    return urlSafe(QByteArray(reinterpret_cast<const char*>(numbers.data()), sizeof numbers));
}

QByteArray challengeOf(const QByteArray& verifier)
{
    return urlSafe(QCryptographicHash::hash(verifier, QCryptographicHash::Sha256));
}
