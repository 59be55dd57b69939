#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <utility>

namespace kovalin::backend {

/// What a form or a query holds, as browsers and OAuth clients write it: "+" is a space. A value.
class FormValues final {
public:
    explicit FormValues(QByteArray encoded);

    /// The first value of that name; empty where there is none, which OAuth doesn't tell apart.
    [[nodiscard]] QString value(QStringView name) const;

    /// In the order in which they came.
    [[nodiscard]] const QList<std::pair<QString, QString>>& all() const { return _values; }

private:
    QList<std::pair<QString, QString>> _values;
};

} // namespace kovalin::backend
