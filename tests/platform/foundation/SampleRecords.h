#pragma once

#include "platform/foundation/KeyedArchiver.h"
#include "platform/foundation/KeyedUnarchiver.h"

namespace kovalin::test {

/// A record that holds others of its own kind, to nest as deeply as one likes.
struct SampleNode {
    SampleNode();
    ~SampleNode();
    explicit SampleNode(const platform::KeyedUnarchiver& coder);
    SampleNode(const SampleNode&) = default;
    SampleNode& operator=(const SampleNode&) = default;

    void encodeWithCoder(platform::KeyedArchiver& coder) const;

    std::shared_ptr<SampleNode> child;
    std::optional<QList<std::shared_ptr<SampleNode>>> children;
};

/// A small record.
struct SampleSticker {
    SampleSticker(const QString& stickerUrl, const std::optional<QString>& stickerText);
    explicit SampleSticker(const platform::KeyedUnarchiver& coder);

    void encodeWithCoder(platform::KeyedArchiver& coder) const;

    bool operator==(const SampleSticker&) const = default;

    QString url;
    std::optional<QString> text;
};

/// A record with a value of each kind.
struct SamplePack {
    SamplePack();
    explicit SamplePack(const platform::KeyedUnarchiver& coder);

    void encodeWithCoder(platform::KeyedArchiver& coder) const;

    std::optional<QString> name;
    std::optional<QStringList> tags;
    std::optional<QColor> color;
    bool isNew = false;
    qint64 size = 0;
    double weight = 0;
    std::shared_ptr<const SampleSticker> cover;
    std::optional<QList<std::shared_ptr<const SampleSticker>>> stickers;
};

/// A pack with everything in it; check_archive.py knows these values too.
SamplePack samplePack();

} // namespace kovalin::test
