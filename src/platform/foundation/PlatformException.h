#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <exception>

namespace kovalin::platform {

/// What the platform throws: a name to tell the kinds apart, and a sentence for people. A value; copying never throws.
/// Any thread.
class QXSDKKOVALINKIT_EXPORT PlatformException : public std::exception {
public:
    PlatformException(const QString& name, const QString& reason);
    ~PlatformException() override;

    PlatformException(const PlatformException&) noexcept = default;
    PlatformException& operator=(const PlatformException&) noexcept = default;

    /// The kind, for code to compare.
    [[nodiscard]] QString name() const { return _name; }

    /// What went wrong, in words; may be empty.
    [[nodiscard]] QString reason() const { return _reason; }

    /// "name: reason" in UTF-8. Lives as long as this object.
    [[nodiscard]] const char* what() const noexcept override;

private:
    QString _name;
    QString _reason;
    QByteArray _what;
};

} // namespace kovalin::platform
