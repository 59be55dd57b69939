#include "telemetry/DecodedEvents.h"

#include "support/ChildProcess.h"

#include <QtCore/QStringList>

#include <protozero/pbf_writer.hpp>

#include <sstream>
#include <stdexcept>

namespace kovalin::test {

namespace {

// Of the description of the events on the wire.
constexpr protozero::pbf_tag_type batchEventsField = 3;
constexpr protozero::pbf_tag_type eventDataField = 3;

/// What protoc prints of a message of the type, line by line.
std::vector<std::string> linesOf(const QString& type, const QByteArray& message)
{
    ChildProcess protoc(QStringLiteral(KOVALIN_PROTOC),
                        {QStringLiteral("--decode=kovalin.analytics.") + type,
                         QStringLiteral("--proto_path=") + QStringLiteral(KOVALIN_EVENTS_PROTO_FOLDER),
                         QStringLiteral("analytics_events.proto")});
    if (!message.isEmpty()) {
        protoc.write(message);
    }
    protoc.closeInput();
    std::istringstream text(protoc.readAll().toStdString());
    if (protoc.waitForExit() != 0) {
        throw std::runtime_error("not a " + type.toStdString());
    }
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line.substr(line.find_first_not_of(' ')));
    }
    return lines;
}

/// What a backslash and a letter stand for, other than the letter itself.
char escaped(char letter)
{
    switch (letter) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return letter;
    }
}

/// The bytes of a text that is printed in quotes, with escapes; anything else as it stands.
std::string valueOf(const std::string& printed)
{
    if (!printed.starts_with('"')) {
        return printed;
    }
    std::string value;
    for (std::size_t i = 1; i + 1 < printed.size(); ++i) {
        if (printed[i] != '\\') {
            value += printed[i];
        } else if (const char next = printed[++i]; next >= '0' && next <= '7') {
            value += static_cast<char>(std::stoi(printed.substr(i, 3), nullptr, 8)); // always three octal digits
            i += 2;
        } else {
            value += escaped(next);
        }
    }
    return value;
}

std::string joined(const std::vector<std::string>& names)
{
    std::string path;
    for (const std::string& name : names) {
        path += (path.empty() ? "" : ".") + name;
    }
    return path;
}

/// The fields of the lines from `first` to `last`, not including that.
template <class Line>
DecodedFields fieldsOf(Line first, Line last)
{
    DecodedFields fields;
    std::vector<std::string> names;
    bool isEmpty = true; // nothing has come since a message began
    for (; first != last; ++first) {
        if (first->ends_with(" {")) {
            names.push_back(first->substr(0, first->size() - 2));
            isEmpty = true;
        } else if (*first == "}") {
            if (isEmpty) {
                fields.emplace_back(joined(names), "{}");
            }
            names.pop_back();
            isEmpty = false;
        } else {
            const std::size_t colon = first->find(": ");
            names.push_back(first->substr(0, colon));
            fields.emplace_back(joined(names), valueOf(first->substr(colon + 2)));
            names.pop_back();
            isEmpty = false;
        }
    }
    if (fields.empty()) {
        fields.emplace_back("", "{}");
    }
    return fields;
}

} // namespace

DecodedFields decodedEvent(const QByteArray& serverEventData)
{
    const auto lines = linesOf(QStringLiteral("ServerEventData"), serverEventData);
    return fieldsOf(lines.begin(), lines.end());
}

std::vector<DecodedFields> decodedEvents(const std::vector<QByteArray>& serverEventData)
{
    std::string batch;
    protozero::pbf_writer writer(batch);
    for (const QByteArray& data : serverEventData) {
        std::string event;
        protozero::pbf_writer(event).add_message(eventDataField, data.constData(),
                                                 static_cast<std::size_t>(data.size()));
        writer.add_message(batchEventsField, event);
    }
    const auto lines = linesOf(QStringLiteral("EventBatch"), QByteArray::fromStdString(batch));

    // Each event is printed as "events {", "data {", its fields, "}", "}".
    std::vector<DecodedFields> events;
    std::size_t depth = 0;
    auto first = lines.begin();
    for (auto line = lines.begin(); line != lines.end(); ++line) {
        if (line->ends_with(" {")) {
            if (++depth == 2) {
                first = line + 1;
            }
        } else if (*line == "}" && depth-- == 2) {
            events.push_back(fieldsOf(first, line));
        }
    }
    return events;
}

} // namespace kovalin::test
