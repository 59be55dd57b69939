#include "kovalin/PacksDocumentReader.h"

#include <QtCore/QJsonValue>

#include <QtCore/QLatin1String>

#include <algorithm>
#include <array>
#include <istream>
#include <memory>
#include <span>
#include <utility>

namespace kovalin::cli {

namespace {

// The keys that are looked at. What their values mean, and whether they have the right type, the records decide; the rest
// is left out here, so that a document can't fill memory with what nobody asks for.
constexpr std::array<std::string_view, 1> documentKeys{"packs"};
constexpr std::array<std::string_view, 5> packKeys{"id", "title", "color", "visible", "stickers"};
constexpr std::array<std::string_view, 5> stickerKeys{"comic_id", "tags", "url", "template_id", "capabilities"};

/// The entry equal to the name, or an empty text.
std::string_view keyAmong(std::span<const std::string_view> keys, std::string_view name)
{
    const auto found = std::ranges::find(keys, name);
    return found == keys.end() ? std::string_view() : *found;
}

} // namespace

void PacksDocumentReader::read(std::istream& stream)
{
    nlohmann::json::sax_parse(stream, static_cast<nlohmann::json_sax<nlohmann::json>*>(this));
}

std::optional<KovalinPackList> PacksDocumentReader::takePacks()
{
    return std::exchange(_packs, std::nullopt);
}

bool PacksDocumentReader::null()
{
    return scalar([] { return QJsonValue(); });
}

bool PacksDocumentReader::boolean(bool value)
{
    return scalar([value] { return QJsonValue(value); });
}

bool PacksDocumentReader::number_integer(number_integer_t value)
{
    return scalar([value] { return QJsonValue(static_cast<double>(value)); });
}

bool PacksDocumentReader::number_unsigned(number_unsigned_t value)
{
    return scalar([value] { return QJsonValue(static_cast<double>(value)); });
}

bool PacksDocumentReader::number_float(number_float_t value, const string_t& /*text*/)
{
    return scalar([value] { return QJsonValue(value); });
}

bool PacksDocumentReader::string(string_t& value)
{
    return scalar([&value] { return QJsonValue(QString::fromStdString(value)); });
}

bool PacksDocumentReader::binary(binary_t& /*value*/)
{
    return false; // JSON text has none
}

bool PacksDocumentReader::start_object(std::size_t /*elements*/)
{
    if (_skippedDepth == 0 && _place == Place::Outside) {
        _isObject = true;
        _place = Place::Document;
    } else if (_skippedDepth == 0 && _place == Place::Packs) {
        _place = Place::Pack;
    } else if (_skippedDepth == 0 && _place == Place::Stickers) {
        _place = Place::Sticker;
    } else {
        skip(QJsonObject());
    }
    return true;
}

bool PacksDocumentReader::start_array(std::size_t /*elements*/)
{
    if (_place == Place::Outside) {
        return false;
    }
    const bool counts = _skippedDepth == 0 && !_key.empty();
    if (counts && _place == Place::Document) {
        _packs.emplace();
        _place = Place::Packs;
    } else if (counts && _place == Place::Pack && _key == "stickers") {
        _place = Place::Stickers;
    } else if (counts && _place == Place::Sticker) {
        _field = QJsonArray();
        _place = Place::StickerField;
    } else {
        skip(QJsonArray());
    }
    return true;
}

bool PacksDocumentReader::key(string_t& name)
{
    if (_skippedDepth > 0) {
        return true;
    }
    switch (_place) {
    case Place::Document:
        _key = keyAmong(documentKeys, name);
        if (_key == "packs") {
            _packs.reset();
        }
        break;
    case Place::Pack:
        _key = keyAmong(packKeys, name);
        if (_key == "stickers") {
            _stickers.clear();
        }
        break;
    default:
        _key = keyAmong(stickerKeys, name);
        break;
    }
    return true;
}

bool PacksDocumentReader::end_object()
{
    leave();
    return true;
}

bool PacksDocumentReader::end_array()
{
    leave();
    return true;
}

bool PacksDocumentReader::parse_error(std::size_t position, const std::string& /*lastToken*/,
                                      const nlohmann::detail::exception& error)
{
    _syntaxError = SyntaxError{position, error.what()};
    return false;
}

/// Takes in a value without parts; false for one that stands alone. It is only made where it counts.
template <typename MakeValue>
bool PacksDocumentReader::scalar(MakeValue makeValue)
{
    if (_skippedDepth > 0) {
        return true;
    }
    if (_place == Place::StickerField) {
        _field.append(makeValue());
    } else if ((_place == Place::Pack || _place == Place::Sticker) && !_key.empty()) {
        setField(makeValue());
    }
    return _place != Place::Outside;
}

/// Passes over a list or object; a field that has it for a value keeps its kind.
void PacksDocumentReader::skip(const QJsonValue& placeHolder)
{
    if (_skippedDepth == 0 && (_place == Place::Pack || _place == Place::Sticker) && !_key.empty()) {
        setField(placeHolder);
    }
    ++_skippedDepth;
}

void PacksDocumentReader::leave()
{
    if (_skippedDepth > 0) {
        --_skippedDepth;
        return;
    }
    if (_place == Place::StickerField) {
        _place = Place::Sticker;
        setField(std::exchange(_field, QJsonArray()));
        return;
    }
    if (_place == Place::Sticker) {
        finishSticker();
    } else if (_place == Place::Pack) {
        finishPack();
    }
    _place = static_cast<Place>(static_cast<int>(_place) - 1);
}

void PacksDocumentReader::setField(const QJsonValue& value)
{
    QJsonObject& record = _place == Place::Pack ? _pack : _sticker;
    record.insert(QLatin1String(_key.data(), static_cast<qsizetype>(_key.size())), value);
}

void PacksDocumentReader::finishSticker()
{
    _stickers.append(std::make_shared<const KovalinSticker>(std::exchange(_sticker, QJsonObject())));
}

void PacksDocumentReader::finishPack()
{
    const auto pack = std::make_shared<KovalinPack>(std::exchange(_pack, QJsonObject()));
    _stickers.squeeze();
    pack->setStickers(std::exchange(_stickers, KovalinStickerList()));
    _packs->append(pack);
}

} // namespace kovalin::cli
