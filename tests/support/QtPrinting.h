#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <gtest/gtest.h>

// So that a failing comparison shows text and not bytes. Found by googletest through argument-dependent lookup.

inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toUtf8().constData() << '"';
}

inline void PrintTo(const QStringList& list, std::ostream* stream)
{
    *stream << "[\"" << list.join(QLatin1String("\", \"")).toUtf8().constData() << "\"]";
}
