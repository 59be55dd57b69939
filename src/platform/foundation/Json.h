#pragma once

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QStringView>

#include <initializer_list>
#include <optional>

namespace kovalin::platform {

// Reading JSON from outside, where nothing about its shape can be trusted. Any thread.
//
// A missing key, a null and a value of another type than asked for are all the same: absent, std::nullopt. A text, list
// or object that is there but empty is present, so it is a filled optional.

[[nodiscard]] std::optional<QString> jsonString(const QJsonObject& object, QStringView key);

/// Absent unless the value is an array. Elements that are no strings are left out.
[[nodiscard]] std::optional<QStringList> jsonStringList(const QJsonObject& object, QStringView key);

[[nodiscard]] std::optional<QJsonArray> jsonArray(const QJsonObject& object, QStringView key);
[[nodiscard]] std::optional<QJsonObject> jsonObject(const QJsonObject& object, QStringView key);

/// Only true and false count; a number is absent.
[[nodiscard]] std::optional<bool> jsonBool(const QJsonObject& object, QStringView key);

/// Only a number counts; true, false and a text of digits are absent.
[[nodiscard]] std::optional<double> jsonNumber(const QJsonObject& object, QStringView key);

/// The value which is reached from `value` by the keys of `path`, one after the other; with an empty path `value`
/// itself. A step through anything but an object, or to a missing key, gives QJsonValue::Undefined.
[[nodiscard]] QJsonValue jsonValueAt(const QJsonValue& value, std::initializer_list<QStringView> path);

} // namespace kovalin::platform
