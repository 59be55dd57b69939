#include "events/EventBatchReader.h"

#include "events/AnalyticsEventsDescriptors.h"
#include "events/WireFault.h"

#include <QtCore/QJsonArray>
#include <QtCore/QStringDecoder>
#include <QtCore/QStringList>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/descriptor.pb.h>
#include <google/protobuf/dynamic_message.h>
#include <google/protobuf/unknown_field_set.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// The one file that knows libprotobuf: its headers take longer to compile than all the rest here.

namespace kovalin::analytics {

namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::UnknownFieldSet;

/// The format, as the .proto file tells it. Made on first use, never destroyed.
class Format final {
public:
    static const Format& shared()
    {
        static const Format& format = *new Format;
        return format;
    }

    [[nodiscard]] std::unique_ptr<Message> newBatch() const { return std::unique_ptr<Message>(_batch->New()); }
    [[nodiscard]] const MessageShape& batchShape() const { return _shapes.at(_batch->GetDescriptor()); }

private:
    Format()
    {
        // What is wrong is told by our callers; the library would write it to standard error.
        google::protobuf::SetLogHandler(nullptr);
        google::protobuf::FileDescriptorSet files;
        if (!files.ParseFromArray(analyticsEventsDescriptors, sizeof analyticsEventsDescriptors)) {
            qFatal("The descriptors of the analytics events are damaged");
        }
        for (auto& file : *files.mutable_file()) {
            // As proto3 says it a number that is there as 0 and one that isn't there are the same, which hides what a
            // client left out. On the wire the two versions don't differ.
            file.clear_syntax();
            _pool.BuildFile(file);
        }
        const Descriptor* const batch = _pool.FindMessageTypeByName("kovalin.analytics.EventBatch");
        if (!batch) {
            qFatal("The descriptors of the analytics events have no batch");
        }
        _batch = _factory.GetPrototype(batch);
        _addShape(*batch);
    }

    const MessageShape* _addShape(const Descriptor& message)
    {
        const auto [place, isNew] = _shapes.try_emplace(&message);
        MessageShape& shape = place->second;
        for (int i = 0; isNew && i < message.field_count(); ++i) {
            const FieldDescriptor& field = *message.field(i);
            shape.fields.emplace(static_cast<std::uint32_t>(field.number()),
                                 MessageShape::Field{
                                     .name = QString::fromStdString(field.name()),
                                     .isText = field.type() == FieldDescriptor::TYPE_STRING,
                                     .isRepeated = field.is_repeated(),
                                     .message = field.type() == FieldDescriptor::TYPE_MESSAGE
                                                    ? _addShape(*field.message_type())
                                                    : nullptr,
                                 });
        }
        return &shape;
    }

    google::protobuf::DescriptorPool _pool;
    google::protobuf::DynamicMessageFactory _factory;
    const Message* _batch = nullptr;
    std::map<const Descriptor*, MessageShape> _shapes;
};

/// Every character as it came; a byte order mark is one too. Requires UTF-8.
QString textOf(const std::string& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

QJsonValue textOrHex(const std::string& bytes)
{
    const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (view.isValidUtf8()) {
        return textOf(bytes);
    }
    return QJsonObject{{QStringLiteral("hex"), QString::fromLatin1(view.toByteArray().toHex())}};
}

QList<UnknownField> unknownIn(const UnknownFieldSet& fields, const QString& in);

UnknownField unknownFrom(const google::protobuf::UnknownField& field, const QString& in)
{
    using Type = google::protobuf::UnknownField::Type;
    UnknownField unknown{.in = in, .number = field.number()};
    switch (field.type()) {
    case Type::TYPE_VARINT:
        unknown.value = jsonNumber(field.varint());
        break;
    case Type::TYPE_FIXED64:
        unknown.wireType = 1;
        unknown.value = jsonNumber(field.fixed64());
        break;
    case Type::TYPE_LENGTH_DELIMITED:
        unknown.wireType = 2;
        unknown.value = textOrHex(field.length_delimited());
        break;
    case Type::TYPE_GROUP: {
        unknown.wireType = 3;
        QJsonArray inner;
        for (const UnknownField& each : unknownIn(field.group(), in)) {
            inner.append(each.toJson());
        }
        unknown.value = inner;
        break;
    }
    case Type::TYPE_FIXED32:
        unknown.wireType = 5;
        unknown.value = jsonNumber(field.fixed32());
        break;
    }
    return unknown;
}

QList<UnknownField> unknownIn(const UnknownFieldSet& fields, const QString& in)
{
    QList<UnknownField> list;
    for (int i = 0; i < fields.field_count(); ++i) {
        list.append(unknownFrom(fields.field(i), in));
    }
    return list;
}

std::vector<const FieldDescriptor*> fieldsSetIn(const Message& message)
{
    std::vector<const FieldDescriptor*> fields; // in the order of their numbers
    message.GetReflection()->ListFields(message, &fields);
    return fields;
}

/// Reads one message with all that are in it.
class MessageReader final {
public:
    /// What of it was unknown.
    QList<UnknownField> unknown;

    /// What the format declares of it and is set. `path` is where it stands.
    QJsonObject read(const Message& message, const QString& path)
    {
        unknown += unknownIn(message.GetReflection()->GetUnknownFields(message), path);
        QJsonObject object;
        for (const FieldDescriptor* field : fieldsSetIn(message)) {
            object.insert(QString::fromStdString(field->name()), _fieldOf(message, *field, path));
        }
        return object;
    }

private:
    QJsonValue _fieldOf(const Message& message, const FieldDescriptor& field, const QString& path)
    {
        const QString name = QString::fromStdString(field.name());
        const QString place = path.isEmpty() ? name : QString(path + u'.' + name);
        if (!field.is_repeated()) {
            return _valueOf(message, field, place, single);
        }
        QJsonArray list;
        for (int i = 0; i < message.GetReflection()->FieldSize(message, &field); ++i) {
            list.append(_valueOf(message, field, QString(place + u'#' + QString::number(i + 1)), i));
        }
        return list;
    }

    /// `index` is `single` or that of a repeated field.
    QJsonValue _valueOf(const Message& message, const FieldDescriptor& field, const QString& place, int index)
    {
        const auto& reflection = *message.GetReflection();
        const auto get = [&](auto getOne, auto getRepeated) {
            return index == single ? (reflection.*getOne)(message, &field)
                                   : (reflection.*getRepeated)(message, &field, index);
        };
        using Reflection = google::protobuf::Reflection;
        switch (field.cpp_type()) {
        case FieldDescriptor::CPPTYPE_INT32:
            return get(&Reflection::GetInt32, &Reflection::GetRepeatedInt32);
        case FieldDescriptor::CPPTYPE_INT64:
            return static_cast<qint64>(get(&Reflection::GetInt64, &Reflection::GetRepeatedInt64));
        case FieldDescriptor::CPPTYPE_UINT32:
            return jsonNumber(get(&Reflection::GetUInt32, &Reflection::GetRepeatedUInt32));
        case FieldDescriptor::CPPTYPE_UINT64:
            return jsonNumber(get(&Reflection::GetUInt64, &Reflection::GetRepeatedUInt64));
        case FieldDescriptor::CPPTYPE_DOUBLE:
            return get(&Reflection::GetDouble, &Reflection::GetRepeatedDouble);
        case FieldDescriptor::CPPTYPE_FLOAT:
            return get(&Reflection::GetFloat, &Reflection::GetRepeatedFloat);
        case FieldDescriptor::CPPTYPE_BOOL:
            return get(&Reflection::GetBool, &Reflection::GetRepeatedBool);
        case FieldDescriptor::CPPTYPE_ENUM:
            return get(&Reflection::GetEnumValue, &Reflection::GetRepeatedEnumValue);
        case FieldDescriptor::CPPTYPE_STRING:
            return textOrHex(get(&Reflection::GetString, &Reflection::GetRepeatedString));
        case FieldDescriptor::CPPTYPE_MESSAGE:
            break;
        }
        return read(index == single ? reflection.GetMessage(message, &field)
                                    : reflection.GetRepeatedMessage(message, &field, index),
                    place);
    }

    static constexpr int single = -1;
};

/// The field of this name, which the .proto file has to declare.
const FieldDescriptor& fieldOf(const Message& message, const char* name)
{
    const FieldDescriptor* const field = message.GetDescriptor()->FindFieldByName(name);
    if (!field) {
        qFatal("The format of the analytics events has no field \"%s\"", name);
    }
    return *field;
}

QString textIn(const Message& message, const char* name)
{
    return textOf(message.GetReflection()->GetString(message, &fieldOf(message, name)));
}

QString namesOfFieldsSetIn(const Message& message)
{
    QStringList names;
    for (const FieldDescriptor* field : fieldsSetIn(message)) {
        names.append(QString::fromStdString(field->name()));
    }
    return names.join(u'+');
}

Event eventFrom(const Message& message)
{
    const auto& reflection = *message.GetReflection();
    const FieldDescriptor& data = fieldOf(message, "data");
    Event event{.id = textIn(message, "event_id"),
                .timeMillis = reflection.GetInt64(message, &fieldOf(message, "time_millis")),
                .size = static_cast<qsizetype>(message.ByteSizeLong())};
    MessageReader reader;
    const QJsonObject all = reader.read(message, {});
    event.unknown = reader.unknown;
    if (reflection.HasField(message, &data)) {
        event.name = namesOfFieldsSetIn(reflection.GetMessage(message, &data));
        const QJsonObject messages = all.value(u"data").toObject();
        event.fields = messages.size() == 1 ? messages.begin()->toObject() : messages;
    }
    return event;
}

EventBatch batchFrom(const Message& message)
{
    const auto& reflection = *message.GetReflection();
    EventBatch batch{.id = textIn(message, "batch_id"),
                     .dropped = reflection.GetUInt64(message, &fieldOf(message, "dropped")),
                     .unknown = unknownIn(reflection.GetUnknownFields(message), {})};
    const FieldDescriptor& events = fieldOf(message, "events");
    for (int i = 0; i < reflection.FieldSize(message, &events); ++i) {
        batch.events.append(eventFrom(reflection.GetRepeatedMessage(message, &events, i)));
        batch.events.back().batchId = batch.id;
    }
    return batch;
}

} // namespace

std::variant<EventBatch, QString> readEventBatch(const QByteArray& bytes)
{
    if (bytes.size() > kMostBatchBytes) {
        return QStringLiteral("longer than %1 bytes").arg(kMostBatchBytes);
    }
    const Format& format = Format::shared();
    if (const auto fault = wireFault(bytes, format.batchShape())) {
        return *fault;
    }
    const auto message = format.newBatch();
    if (!message->ParseFromArray(bytes.constData(), static_cast<int>(bytes.size()))) {
        return QStringLiteral("no message of protobuf");
    }
    EventBatch batch = batchFrom(*message);
    if (batch.id.isEmpty()) {
        return QStringLiteral("no \"batch_id\"");
    }
    return batch;
}

} // namespace kovalin::analytics
