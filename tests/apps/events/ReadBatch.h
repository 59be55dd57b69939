#pragma once

#include "events/EventBatchReader.h"
#include "support/QtPrinting.h"

#include <QtCore/QJsonDocument>

#include <gtest/gtest.h>

#include <variant>

namespace kovalin::test {

/// What is wrong with the bytes of a batch; empty where they are one.
[[nodiscard]] inline QString faultOf(const QByteArray& bytes)
{
    const auto read = analytics::readEventBatch(bytes);
    const auto* fault = std::get_if<QString>(&read);
    return fault ? *fault : QString();
}

/// The batch; an empty one, and a failure of the test, where the bytes are none.
[[nodiscard]] inline analytics::EventBatch batchIn(const QByteArray& bytes)
{
    auto read = analytics::readEventBatch(bytes);
    if (const auto* fault = std::get_if<QString>(&read)) {
        ADD_FAILURE() << fault->toStdString();
        return {};
    }
    return std::get<analytics::EventBatch>(std::move(read));
}

/// The only event of a batch.
[[nodiscard]] inline analytics::Event onlyEventIn(const QByteArray& bytes)
{
    const auto events = batchIn(bytes).events;
    EXPECT_EQ(events.size(), 1);
    return events.isEmpty() ? analytics::Event() : events.front();
}

[[nodiscard]] inline QJsonObject json(const QByteArray& text)
{
    return QJsonDocument::fromJson(text).object();
}

/// For comparisons that show what differs.
[[nodiscard]] inline std::string textOf(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

} // namespace kovalin::test
