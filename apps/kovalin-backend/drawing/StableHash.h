#pragma once

#include <QtCore/QString>

#include <cstddef>
#include <cstdint>

namespace kovalin::drawing {

/// Picks that follow from a text alone: the same on every machine, in every process and version of Qt.
///
/// A value; any thread. Each choice is named, so that a new choice leaves the others as they were.
class StableHash final {
public:
    explicit StableHash(const QString& text)
        : _seed(mixed(bytesHash(text.toUtf8(), offsetBasis)))
    {
    }

    /// A number that looks random, for the choice of this name.
    [[nodiscard]] std::uint64_t number(const char* choice) const { return mixed(bytesHash(choice, _seed)); }
    /// Below `count`, which must not be 0.
    [[nodiscard]] std::size_t below(std::size_t count, const char* choice) const
    {
        return static_cast<std::size_t>(number(choice) % count);
    }
    /// From 0 up to, not including, 1.
    [[nodiscard]] double fraction(const char* choice) const
    {
        constexpr int unusedBits = 64 - 53; // what doesn't fit into a double
        return static_cast<double>(number(choice) >> unusedBits) * 0x1p-53;
    }

private:
    // FNV-1a's constants for 64 bits.
    static constexpr std::uint64_t offsetBasis = 0xcbf29ce484222325U;
    static constexpr std::uint64_t prime = 0x100000001b3U;

    static std::uint64_t bytesHash(const QByteArray& bytes, std::uint64_t hash)
    {
        for (const char byte : bytes) {
            hash = (hash ^ static_cast<unsigned char>(byte)) * prime;
        }
        return hash;
    }
    /// FNV's low bits depend on few of a short text's bits; this spreads them (the last step of SplitMix64).
    static std::uint64_t mixed(std::uint64_t hash)
    {
        hash = (hash ^ (hash >> 30)) * 0xbf58476d1ce4e5b9U;
        hash = (hash ^ (hash >> 27)) * 0x94d049bb133111ebU;
        return hash ^ (hash >> 31);
    }

    std::uint64_t _seed;
};

} // namespace kovalin::drawing
