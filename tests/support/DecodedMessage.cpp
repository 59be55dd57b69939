#include "support/DecodedMessage.h"

#include "support/ChildProcess.h"

#include <QtCore/QFileInfo>
#include <QtCore/QStringList>

namespace kovalin::test {

namespace {

constexpr const char* kNameEnd = ": ";
constexpr const char* kMessageBegin = " {";

std::string unquoted(const std::string& value)
{
    return value.size() >= 2 && value.front() == '"' ? value.substr(1, value.size() - 2) : value;
}

/// Reads lines up to the end of the output or of the message.
DecodedMessage messageIn(ChildProcess& output)
{
    DecodedMessage message;
    while (const std::optional<QByteArray> line = output.readLine()) {
        const std::string text = line->trimmed().toStdString();
        if (text == "}") {
            break;
        }
        const std::size_t nameEnd = text.find(kNameEnd);
        if (nameEnd != std::string::npos) {
            message.values.emplace_back(text.substr(0, nameEnd), text.substr(nameEnd + 2));
        } else {
            const std::string name = text.substr(0, text.find(kMessageBegin));
            message.messages.push_back({name, messageIn(output)});
        }
    }
    return message;
}

std::optional<DecodedMessage> decoded(const QStringList& arguments, const QByteArray& bytes)
{
    ChildProcess reader(QStringLiteral(KOVALIN_PROTOC), arguments);
    reader.write(bytes);
    reader.closeInput();
    DecodedMessage message = messageIn(reader);
    return reader.waitForExit() == 0 ? std::optional(std::move(message)) : std::nullopt;
}

} // namespace

std::optional<std::string> DecodedMessage::value(const std::string& name) const
{
    std::optional<std::string> found;
    for (const auto& [valueName, text] : values) {
        if (valueName == name) {
            if (found) {
                return std::nullopt;
            }
            found = unquoted(text);
        }
    }
    return found;
}

std::vector<DecodedMessage> DecodedMessage::all(const std::string& name) const
{
    std::vector<DecodedMessage> found;
    for (const auto& [messageName, message] : messages) {
        if (messageName == name) {
            found.push_back(message);
        }
    }
    return found;
}

DecodedMessage DecodedMessage::one(const std::string& name) const
{
    const std::vector<DecodedMessage> found = all(name);
    return found.size() == 1 ? found.front() : DecodedMessage();
}

std::optional<DecodedMessage> decodedEvents(const QString& message, const QByteArray& bytes)
{
    const QFileInfo format(QStringLiteral(KOVALIN_ANALYTICS_EVENTS_PROTO));
    return decoded({QStringLiteral("--decode=kovalin.analytics.") + message,
                    QStringLiteral("--proto_path=") + format.path(), format.fileName()},
                   bytes);
}

std::optional<DecodedMessage> decodedRaw(const QByteArray& bytes)
{
    return decoded({QStringLiteral("--decode_raw")}, bytes);
}

} // namespace kovalin::test
