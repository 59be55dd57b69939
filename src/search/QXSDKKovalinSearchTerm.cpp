#include "search/QXSDKKovalinSearchTerm.h"

QXSDKKovalinSearchTerm::QXSDKKovalinSearchTerm(const QString& value, QXSDKKovalinCategory category)
    : _value(value)
    , _category(category)
{
}

bool QXSDKKovalinSearchTerm::isEqual(const QXSDKKovalinSearchTerm& other) const
{
    return _value == other._value && _category == other._category;
}
