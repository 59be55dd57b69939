#include "kits/core/default/AnalyticsBody.h"

#include <protozero/pbf_writer.hpp>

#include <string>

namespace kovalin::kits {

namespace {

constexpr protozero::pbf_tag_type batchIdField = 1;
constexpr protozero::pbf_tag_type droppedField = 2;
constexpr protozero::pbf_tag_type eventsField = 3;

constexpr protozero::pbf_tag_type eventIdField = 1;
constexpr protozero::pbf_tag_type timeMillisField = 2;
constexpr protozero::pbf_tag_type dataField = 3;

std::string textOf(const QUuid& id)
{
    return id.toByteArray(QUuid::WithoutBraces).toStdString();
}

void addEvent(protozero::pbf_writer& body, const OutboxEntry& entry)
{
    protozero::pbf_writer event(body, eventsField);
    event.add_string(eventIdField, textOf(entry.id));
    event.add_int64(timeMillisField, entry.time);
    event.add_message(dataField, entry.bytes.constData(), static_cast<std::size_t>(entry.bytes.size()));
}

} // namespace

QByteArray analyticsBody(const OutboxBatch& batch)
{
    std::string bytes;
    protozero::pbf_writer body(bytes);
    body.add_string(batchIdField, textOf(batch.id));
    body.add_uint64(droppedField, batch.dropped);
    for (const OutboxEntry& entry : batch.entries) {
        addEvent(body, entry);
    }
    return QByteArray::fromStdString(bytes);
}

} // namespace kovalin::kits
