#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>

namespace kovalin::platform {

/// The body of a request that can be sent once: it refuses to go back to its start, without which Qt can't send the
/// request again by itself when a connection breaks. Private to this folder; one thread.
class OneWayBody final : public QIODevice {
public:
    OneWayBody(QByteArray bytes, QObject* parent);

    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] bool atEnd() const override { return bytesAvailable() == 0; }
    [[nodiscard]] qint64 bytesAvailable() const override;
    bool reset() override { return false; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    const QByteArray _bytes;
    qint64 _taken = 0;
};

} // namespace kovalin::platform
