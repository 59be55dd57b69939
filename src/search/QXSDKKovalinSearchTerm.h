#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "search/QXSDKKovalinCategory.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <memory>

/// One search: its text and where it came from. Immutable; any thread.
class QXSDKKOVALINKIT_EXPORT QXSDKKovalinSearchTerm final {
public:
    QXSDKKovalinSearchTerm(const QString& value, QXSDKKovalinCategory category);

    [[nodiscard]] const QString& value() const { return _value; }
    [[nodiscard]] QXSDKKovalinCategory category() const { return _category; }

    /// Whether text and category are equal. There is no hash.
    [[nodiscard]] bool isEqual(const QXSDKKovalinSearchTerm& other) const;

private:
    QString _value;
    QXSDKKovalinCategory _category;
};

/// A shared term; never null in a list.
using QXSDKKovalinSearchTermPtr = std::shared_ptr<const QXSDKKovalinSearchTerm>;
using QXSDKKovalinSearchTermList = QList<QXSDKKovalinSearchTermPtr>;
