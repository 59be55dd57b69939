#include "apps/events/EncodedBatch.h"

#include "support/ChildProcess.h"

#include <QtCore/QFileInfo>
#include <QtCore/QStringList>

#include <stdexcept>

namespace kovalin::test {

namespace {

QByteArray encoded(const QString& proto, const QByteArray& text)
{
    ChildProcess protoc(QStringLiteral(KOVALIN_PROTOC),
                        {QStringLiteral("--encode=kovalin.analytics.EventBatch"),
                         QString(QStringLiteral("--proto_path=") + QFileInfo(proto).path()), proto});
    protoc.write(text);
    protoc.closeInput();
    QByteArray bytes = protoc.readAll();
    if (protoc.waitForExit() != 0) {
        throw std::runtime_error("no batch in protobuf's text form");
    }
    return bytes;
}

} // namespace

QByteArray encodedBatch(const QByteArray& text)
{
    return encoded(QStringLiteral(KOVALIN_EVENTS_PROTO), text);
}

QByteArray encodedLaterBatch(const QByteArray& text)
{
    return encoded(QStringLiteral(KOVALIN_LATER_EVENTS_PROTO), text);
}

QByteArray eventText(const QByteArray& id, const QByteArray& data)
{
    return "events { event_id: \"" + id + "\" time_millis: 17 data { " + data + " } } ";
}

QByteArray shareText(const QByteArray& stickerId)
{
    return "kovalin_kit_share { sticker_id: \"" + stickerId + "\" share_category: 1 }";
}

QByteArray batchText(const QByteArray& events)
{
    return QByteArray("batch_id: \"") + kBatchId + "\" " + events;
}

} // namespace kovalin::test
