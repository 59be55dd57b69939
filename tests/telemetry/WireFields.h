#pragma once

#include <QtCore/QByteArray>

#include <protozero/pbf_reader.hpp>

#include <cstdint>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kovalin::test {

/// One field of a protobuf message as it stands on the wire: a varint, or bytes, which may be a text or a message.
struct WireField {
    std::uint32_t number;
    std::variant<std::uint64_t, std::string> value;

    friend bool operator==(const WireField&, const WireField&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const WireField& field)
    {
        stream << field.number << ": ";
        if (const auto* const varint = std::get_if<std::uint64_t>(&field.value)) {
            return stream << *varint;
        }
        return stream << '"' << std::get<std::string>(field.value) << '"';
    }
};

inline WireField varint(std::uint32_t number, std::uint64_t value)
{
    return {number, value};
}

inline WireField bytes(std::uint32_t number, std::string value)
{
    return {number, std::move(value)};
}

/// All fields of a message in their order, those that are 0 or empty too. Throws for damage and for fields of other
/// kinds.
inline std::vector<WireField> wireFields(std::string_view message)
{
    std::vector<WireField> fields;
    protozero::pbf_reader reader(message.data(), message.size());
    while (reader.next()) {
        const std::uint32_t number = reader.tag(); // reading the value forgets it
        switch (reader.wire_type()) {
        case protozero::pbf_wire_type::varint:
            fields.push_back(varint(number, reader.get_uint64()));
            break;
        case protozero::pbf_wire_type::length_delimited:
            fields.push_back(bytes(number, reader.get_bytes()));
            break;
        default:
            throw std::runtime_error("a field of another kind");
        }
    }
    return fields;
}

inline std::vector<WireField> wireFields(const QByteArray& message)
{
    return wireFields(std::string_view(message.constData(), static_cast<std::size_t>(message.size())));
}

/// The fields of the message in the only field that a message has.
inline std::vector<WireField> fieldsWithin(const QByteArray& message)
{
    const auto fields = wireFields(message);
    if (fields.size() != 1) {
        throw std::runtime_error("not just one field");
    }
    return wireFields(std::get<std::string>(fields.front().value));
}

} // namespace kovalin::test
