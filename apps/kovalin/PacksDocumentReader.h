#pragma once

#include "search/KovalinPack.h"
#include "search/KovalinSticker.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <nlohmann/json.hpp>

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace kovalin::cli {

/// Makes packs of a packs document while it is being parsed. One document each; one thread.
///
/// Packs, stickers and their lists lie at fixed depths, so one number tells where the parser is, and another how deep it is
/// in something that is passed over: nesting costs nothing.
class PacksDocumentReader final : private nlohmann::json_sax<nlohmann::json> {
public:
    struct SyntaxError {
        std::size_t position; // of the byte at fault, the first being 1
        std::string text;     // in the parser's words
    };

    /// Reads to the end, or to the first error. To be called once.
    void read(std::istream& stream);

    [[nodiscard]] const std::optional<SyntaxError>& syntaxError() const { return _syntaxError; }

    /// False when the document is something else than an object; then it wasn't read further.
    [[nodiscard]] bool isObject() const { return _isObject; }

    /// Nullopt when the document has no "packs", or one that is no list.
    [[nodiscard]] std::optional<KovalinPackList> takePacks();

private:
    /// Where the parser is; each place lies inside the one before.
    enum class Place { Outside, Document, Packs, Pack, Stickers, Sticker, StickerField };

    bool null() override;
    bool boolean(bool value) override;
    bool number_integer(number_integer_t value) override;
    bool number_unsigned(number_unsigned_t value) override;
    bool number_float(number_float_t value, const string_t& text) override;
    bool string(string_t& value) override;
    bool binary(binary_t& value) override;
    bool start_object(std::size_t elements) override;
    bool key(string_t& name) override;
    bool end_object() override;
    bool start_array(std::size_t elements) override;
    bool end_array() override;
    bool parse_error(std::size_t position, const std::string& lastToken,
                     const nlohmann::detail::exception& error) override;

    template <typename MakeValue>
    bool scalar(MakeValue makeValue);
    void skip(const QJsonValue& placeHolder);
    void leave();
    void setField(const QJsonValue& value);
    void finishSticker();
    void finishPack();

    Place _place = Place::Outside;
    std::size_t _skippedDepth = 0;
    std::string_view _key; // the last key at _place; empty unless it is one that counts

    bool _isObject = false;
    std::optional<KovalinPackList> _packs;
    QJsonObject _pack; // without its stickers
    KovalinStickerList _stickers;
    QJsonObject _sticker;
    QJsonArray _field;
    std::optional<SyntaxError> _syntaxError;
};

} // namespace kovalin::cli
