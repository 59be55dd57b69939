#include "events/WireFault.h"

#include <QtCore/QStringList>

#include <protozero/exception.hpp>
#include <protozero/varint.hpp>

#include <limits>
#include <vector>

namespace kovalin::analytics {

namespace {

constexpr int longestVarint = protozero::max_varint_length; // bytes
constexpr int longestTag = 5;                               // bytes; lengths too
constexpr qsizetype fixed32Size = 4;
constexpr qsizetype fixed64Size = 8;

enum class WireType { Varint = 0, Fixed64 = 1, Bytes = 2, GroupStart = 3, GroupEnd = 4, Fixed32 = 5 };

struct Tag {
    std::uint32_t number;
    WireType type;
};

/// What is wrong, thrown within this file.
struct Fault {
    QString text;
};

class Walk final {
public:
    explicit Walk(QByteArrayView bytes)
        : _begin(bytes.data())
        , _position(bytes.data())
        , _end(bytes.data() + bytes.size())
    {
    }

    void walk(const MessageShape& shape) { _walkMessage(shape); }

    /// Where the walk has come to: the field's name below the outermost message, empty in the latter itself.
    [[nodiscard]] QString path() const
    {
        QStringList names;
        for (const Step& step : _path) {
            const QString name =
                step.field ? step.field->name : QStringLiteral("field ") + QString::number(step.number);
            names.append(step.index > 0 ? QString(name + u'#' + QString::number(step.index)) : name);
        }
        return names.join(u'.');
    }

    [[nodiscard]] qsizetype byte() const { return _position - _begin; }

private:
    /// One level down.
    struct Step {
        const MessageShape::Field* field; // null for a field that isn't declared
        std::uint32_t number;
        int index; // from 1 on, of a repeated field; else 0
    };

    void _walkMessage(const MessageShape& shape)
    {
        std::map<std::uint32_t, int> counts; // of repeated fields
        while (_position != _end) {
            const Tag tag = _readTag();
            if (tag.type == WireType::GroupEnd) {
                throw Fault{QStringLiteral("a group ends that hasn't begun")};
            }
            const auto found = shape.fields.find(tag.number);
            const MessageShape::Field* field = found == shape.fields.end() ? nullptr : &found->second;
            _path.push_back({field, tag.number, field && field->isRepeated ? ++counts[tag.number] : 0});
            _walkValue(tag, field);
            _path.pop_back();
        }
    }

    void _walkGroup(std::uint32_t number)
    {
        while (_position != _end) {
            const Tag tag = _readTag();
            if (tag.type == WireType::GroupEnd && tag.number != number) {
                throw Fault{QStringLiteral("another group ends than has begun")};
            }
            if (tag.type == WireType::GroupEnd) {
                return;
            }
            _path.push_back({nullptr, tag.number, 0});
            _walkValue(tag, nullptr);
            _path.pop_back();
        }
        throw Fault{QStringLiteral("ends within a group")};
    }

    /// `field` is null for one that isn't declared.
    void _walkValue(const Tag& tag, const MessageShape::Field* field)
    {
        if (++_fields > kMostFields) {
            throw Fault{QStringLiteral("more than %1 fields").arg(kMostFields)};
        }
        if (_path.size() > std::size_t(kDeepestLevel)) {
            throw Fault{QStringLiteral("more than %1 levels").arg(kDeepestLevel)};
        }
        switch (tag.type) {
        case WireType::Varint:
            static_cast<void>(_readVarint(longestVarint));
            return;
        case WireType::Fixed64:
            _skip(fixed64Size);
            return;
        case WireType::Fixed32:
            _skip(fixed32Size);
            return;
        case WireType::Bytes:
            _walkBytes(field);
            return;
        case WireType::GroupStart:
            _walkGroup(tag.number);
            return;
        case WireType::GroupEnd:
            break;
        }
        throw Fault{QStringLiteral("wire type %1, which there isn't").arg(static_cast<int>(tag.type))};
    }

    void _walkBytes(const MessageShape::Field* field)
    {
        const std::uint64_t length = _readVarint(longestTag);
        if (length > static_cast<std::uint64_t>(_end - _position)) {
            throw Fault{QStringLiteral("a length of %1 goes beyond the end").arg(length)};
        }
        const char* const end = _position + length;
        if (field && field->isText && !QByteArrayView(_position, end).isValidUtf8()) {
            throw Fault{QStringLiteral("no valid UTF-8")};
        }
        if (field && field->message) {
            const char* const outerEnd = _end;
            _end = end;
            _walkMessage(*field->message);
            _end = outerEnd;
        }
        _position = end;
    }

    [[nodiscard]] Tag _readTag()
    {
        constexpr int typeBits = 3;
        const std::uint64_t tag = _readVarint(longestTag);
        if (tag > std::numeric_limits<std::uint32_t>::max()) {
            throw Fault{QStringLiteral("a field number of more than 29 bits")};
        }
        const auto number = static_cast<std::uint32_t>(tag >> typeBits);
        if (number == 0) {
            throw Fault{QStringLiteral("a field number of 0")};
        }
        return {number, static_cast<WireType>(tag & ((1U << typeBits) - 1))};
    }

    [[nodiscard]] std::uint64_t _readVarint(int longest)
    {
        const char* position = _position;
        try {
            const std::uint64_t number = protozero::decode_varint(&position, _end);
            if (position - _position > longest) {
                throw protozero::varint_too_long_exception();
            }
            _position = position;
            return number;
        } catch (const protozero::end_of_buffer_exception&) {
            throw Fault{QStringLiteral("ends within a number")};
        } catch (const protozero::varint_too_long_exception&) {
            throw Fault{QStringLiteral("a number of more than %1 bytes").arg(longest)};
        }
    }

    void _skip(qsizetype size)
    {
        if (size > _end - _position) {
            throw Fault{QStringLiteral("ends within a number")};
        }
        _position += size;
    }

    const char* const _begin;
    const char* _position;
    const char* _end; // of the innermost message
    std::vector<Step> _path;
    int _fields = 0;
};

} // namespace

std::optional<QString> wireFault(QByteArrayView bytes, const MessageShape& shape)
{
    Walk walk(bytes);
    try {
        walk.walk(shape);
        return std::nullopt;
    } catch (const Fault& fault) {
        const QString path = walk.path();
        const QString line = QStringLiteral("%1, at byte %2").arg(fault.text).arg(walk.byte());
        return path.isEmpty() ? line : path + QStringLiteral(": ") + line;
    }
}

} // namespace kovalin::analytics
