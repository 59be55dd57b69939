#include "learned_search/generated-src/StringConversion.h"

#include <QtCore/QByteArrayView>
#include <QtCore/QStringDecoder>

namespace djinni {

StringConversion::Cpp StringConversion::toCpp(const Platform& text)
{
    return text.toStdString();
}

StringConversion::Platform StringConversion::fromCpp(const Cpp& text)
{
    // QString::fromUtf8 would drop a U+FEFF in front, which is a character like any other here.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    return decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

} // namespace djinni
