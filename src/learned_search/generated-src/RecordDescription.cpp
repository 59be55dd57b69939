#include "learned_search/generated-src/RecordDescription.h"

namespace djinni {

RecordDescription::RecordDescription(const QString& className, const void* record)
    : _text(u'<' + className + QStringLiteral(" 0x") + QString::number(reinterpret_cast<quintptr>(record), 16))
{
}

RecordDescription& RecordDescription::field(const QString& name, const std::optional<QString>& value)
{
    _text += u' ' + name + u':' + value.value_or(QStringLiteral("(null)"));
    return *this;
}

RecordDescription& RecordDescription::field(const QString& name, std::optional<std::int64_t> value)
{
    return field(name, value ? std::optional(QString::number(*value)) : std::nullopt);
}

QString RecordDescription::text() const
{
    return _text + u'>';
}

} // namespace djinni
