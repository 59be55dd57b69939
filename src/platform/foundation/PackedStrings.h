#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QAnyStringView>
#include <QtCore/QString>
#include <QtCore/QStringView>

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>

namespace kovalin::platform {

/// A fixed row of strings, each of which may be absent, in one allocation; for records that exist by the hundred thousand.
///
/// Not synchronised: one thread at a time writes, any number may read meanwhile nobody does. A value type; copying copies
/// the text. A string is held in one byte a character when all of it is Latin-1 and in two otherwise, so every string
/// comes back unit by unit as it went in, lone surrogates included, and equal strings are held alike.
class QXSDKKOVALINKIT_EXPORT PackedStrings final {
public:
    /// A row of no strings; every place reads as absent.
    PackedStrings() = default;
    explicit PackedStrings(std::span<const std::optional<QStringView>> strings);
    PackedStrings(std::initializer_list<std::optional<QStringView>> strings);

    PackedStrings(const PackedStrings& other);
    PackedStrings& operator=(const PackedStrings& other);
    PackedStrings(PackedStrings&& other) noexcept = default;
    PackedStrings& operator=(PackedStrings&& other) noexcept = default;
    ~PackedStrings() = default;

    /// The string at `index`, made anew at each call; nullopt when it is absent.
    [[nodiscard]] std::optional<QString> at(std::size_t index) const;

    /// The same without a copy; valid until the row is assigned to or destroyed.
    [[nodiscard]] std::optional<QAnyStringView> viewAt(std::size_t index) const;

    /// Whether both rows hold a string at `index` and the two are equal. An absent string equals nothing.
    [[nodiscard]] bool hasSameAt(std::size_t index, const PackedStrings& other) const;

    /// A hash of the string at `index`, equal for equal strings within a process; 0 when it is absent.
    [[nodiscard]] std::size_t hashAt(std::size_t index) const;

    /// How many strings the row has, absent ones included.
    [[nodiscard]] std::size_t count() const;

    /// Calls `visit` with each present string from `first` on, in order, as viewAt() gives it.
    template <typename Visit>
    void visitFrom(std::size_t first, Visit&& visit) const
    {
        Walk walk(_bytes.get());
        for (std::size_t index = 0, end = count(); index < end; ++index) {
            const auto text = walk.next();
            if (index >= first && text) {
                visit(*text);
            }
        }
    }

private:
    /// Goes through the strings from the first on.
    class QXSDKKOVALINKIT_EXPORT Walk final {
    public:
        explicit Walk(const std::byte* bytes);
        [[nodiscard]] std::optional<QAnyStringView> next();

    private:
        const std::byte* _bytes;
        std::size_t _index = 0;
        std::size_t _offset;
    };

    [[nodiscard]] std::size_t byteCount() const;

    std::unique_ptr<std::byte[]> _bytes;
};

} // namespace kovalin::platform
