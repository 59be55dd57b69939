#pragma once

#include <QtCore/QString>

#include <cstdint>
#include <optional>

namespace djinni {

/// Writes a record as one line for people: "<Class 0xaddress field:value field:value>". An absent value is "(null)".
class RecordDescription final {
public:
    RecordDescription(const QString& className, const void* record);

    RecordDescription& field(const QString& name, const std::optional<QString>& value);
    RecordDescription& field(const QString& name, std::optional<std::int64_t> value);

    [[nodiscard]] QString text() const;

private:
    QString _text;
};

} // namespace djinni
