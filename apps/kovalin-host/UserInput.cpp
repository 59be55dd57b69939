#include "kovalin-host/UserInput.h"

#include <QtGui/QKeySequence>
#include <QtGui/QWheelEvent>
#include <QtTest/QTest>

#include <chrono>
#include <utility>

namespace kovalin::host {

namespace {

quint64 now()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<quint64>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

} // namespace

void clickAt(QQuickWindow& window, const QPointF& point)
{
    QTest::mouseClick(&window, Qt::LeftButton, {}, point.toPoint());
}

void scrollAt(QQuickWindow& window, const QPointF& point, int points)
{
    constexpr quint64 frameMillis = 16;
    const int start = points < 0 ? 1 : -1; // a movement begins with two steps, which are no part of it
    quint64 time = now();
    for (const auto& [phase, step] : {std::pair{Qt::ScrollBegin, 0},
                                      {Qt::ScrollUpdate, start},
                                      {Qt::ScrollUpdate, start},
                                      {Qt::ScrollUpdate, -points},
                                      {Qt::ScrollEnd, 0}}) {
        QWheelEvent event(point, window.mapToGlobal(point), {0, step}, {0, step}, {}, {}, phase, false,
                          Qt::MouseEventSynthesizedBySystem);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(&window, &event);
        time += frameMillis; // what follows without any time between is passed over
    }
}

void typeInto(QQuickWindow& window, const QString& text)
{
    constexpr uint asciiEnd = 0x80;
    for (const uint code : text.toUcs4()) {
        const char32_t character = code;
        const auto key = code < asciiEnd ? static_cast<Qt::Key>(QChar::toUpper(code)) : Qt::Key_unknown;
        QTest::sendKeyEvent(QTest::Click, &window, key, QString::fromUcs4(&character, 1), Qt::NoModifier);
    }
}

void pressKey(QQuickWindow& window, const QString& name)
{
    const QKeyCombination key = QKeySequence::fromString(name, QKeySequence::PortableText)[0];
    QTest::keyClick(&window, key.key(), key.keyboardModifiers());
}

} // namespace kovalin::host
