#include "kovalin-backend/PictureEndpoints.h"

#include "kovalin-backend/drawing/PngFile.h"
#include "kovalin-backend/drawing/StickerDrawing.h"

#include <QtGui/QGuiApplication>

#include <optional>
#include <utility>

namespace kovalin::backend {

namespace {

using drawing::StickerTemplates;

constexpr int badRequest = 400;
constexpr int notFound = 404;

/// The templates in the folder, read anew where the file has changed.
class CurrentTemplates final {
public:
    explicit CurrentTemplates(std::shared_ptr<const ContentFolder> content)
        : _content(std::move(content))
    {
    }

    /// Never null. Throws ContentFault.
    [[nodiscard]] std::shared_ptr<const StickerTemplates> get()
    {
        const QByteArray json = _content->templates().value_or(QByteArrayLiteral(R"({"templates":[]})"));
        if (!_templates || json != _json) {
            try {
                const QString path = _content->path(QStringLiteral("templates.json"));
                _templates = std::make_shared<const StickerTemplates>(json, path);
            } catch (const StickerTemplates::BadTemplates& bad) {
                _templates = nullptr;
                throw ContentFault(bad.what());
            }
            _json = json;
            ++_version;
        }
        return _templates;
    }

    /// Another number for other templates.
    [[nodiscard]] int version() const { return _version; }

private:
    const std::shared_ptr<const ContentFolder> _content;
    std::shared_ptr<const StickerTemplates> _templates;
    QByteArray _json;
    int _version = 0;
};

/// Answers with pictures. The server's thread only.
class Pictures final {
public:
    Pictures(const std::shared_ptr<const ContentFolder>& content, std::shared_ptr<PictureCache> cache)
        : _templates(content)
        , _cache(std::move(cache))
    {
    }

    void giveSticker(const Request& request, const QString& templateId, const QString& avatarId,
                     const std::optional<QString>& friendId, const Endpoints::Done& done);
    void giveAvatar(const Request& request, const QString& avatarId, const Endpoints::Done& done);

private:
    void _give(const Request& request, const QString& key, std::function<QImage(int size)> draw,
               const Endpoints::Done& done);

    CurrentTemplates _templates;
    const std::shared_ptr<PictureCache> _cache;
};

/// What stands before ".png"; absent where that doesn't end it.
std::optional<QString> baseName(const QString& fileName)
{
    const QString end = QStringLiteral(".png");
    return fileName.endsWith(end) ? std::optional(fileName.chopped(end.size())) : std::nullopt;
}

/// Absent for what is no number.
std::optional<int> sizeOf(const Request& request)
{
    bool isNumber = true;
    const auto text = request.queryValue(QStringLiteral("size"));
    const int size = text ? text->toInt(&isNumber) : drawing::usualSize;
    return isNumber ? std::optional(qBound(drawing::smallestSize, size, drawing::largestSize)) : std::nullopt;
}

Answer noPicture(const Request& request, const QString& reason)
{
    return Answer::text(notFound, QStringLiteral("%1: %2").arg(QString::fromUtf8(request.path), reason));
}

Answer withPicture(const QByteArray& png)
{
    Answer answer = Answer::png(png);
    answer.headers.emplaceBack(QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("public, max-age=86400"));
    return answer;
}

void Pictures::giveSticker(const Request& request, const QString& templateId, const QString& avatarId,
                           const std::optional<QString>& friendId, const Endpoints::Done& done)
{
    const auto templates = _templates.get();
    const auto* const sticker = templates->find(templateId);
    if (!sticker) {
        done(noPicture(request, QStringLiteral("there is no template \"%1\"").arg(templateId)));
        return;
    }
    if (sticker->pair.has_value() != friendId.has_value()) {
        done(noPicture(request, sticker->pair ? QStringLiteral("the template is for two, a friend is missing")
                                              : QStringLiteral("the template is for one")));
        return;
    }
    if (friendId == QStringLiteral("%s")) {
        done(noPicture(request, QStringLiteral("the friend's avatar id isn't filled in")));
        return;
    }
    _give(
        request, QString::number(_templates.version()) + QString::fromUtf8(request.path),
        [templates, sticker, avatarId, friendId](int size) {
            return drawing::drawSticker(*sticker, avatarId, friendId, size);
        },
        done);
}

void Pictures::giveAvatar(const Request& request, const QString& avatarId, const Endpoints::Done& done)
{
    _give(
        request, QString::fromUtf8(request.path),
        [avatarId](int size) { return drawing::drawAvatarIcon(avatarId, size); }, done);
}

void Pictures::_give(const Request& request, const QString& key, std::function<QImage(int size)> draw,
                     const Endpoints::Done& done)
{
    const auto size = sizeOf(request);
    if (!size) {
        done(Answer::text(badRequest, QStringLiteral("The size is no number")));
        return;
    }
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        throw ContentFault("pictures take a program with a QGuiApplication"); // a font without one ends the program
    }
    _cache->find((key + u'?' + QString::number(*size)).toUtf8(),
                 [draw = std::move(draw), size = *size] { return drawing::encodedAsPng(draw(size)); },
                 [done](const QByteArray& png) { done(withPicture(png)); });
}

} // namespace

void addPictureEndpoints(Endpoints& endpoints, const std::shared_ptr<const ContentFolder>& content,
                         const std::shared_ptr<PictureCache>& cache)
{
    using Parts = QList<QString>;
    const auto pictures = std::make_shared<Pictures>(content, cache);
    const QByteArray get = QByteArrayLiteral("GET");
    const QString noPng = QStringLiteral("pictures end in .png");
    endpoints.addLate(get, QStringLiteral("/stickers/<template>/<avatar>"),
                      [pictures, noPng](const Request& request, const Parts& parts, const Endpoints::Done& done) {
                          if (const auto avatarId = baseName(parts[1])) {
                              pictures->giveSticker(request, parts[0], *avatarId, std::nullopt, done);
                          } else {
                              done(noPicture(request, noPng));
                          }
                      });
    endpoints.addLate(get, QStringLiteral("/stickers/<template>/<avatar>/<friend>"),
                      [pictures, noPng](const Request& request, const Parts& parts, const Endpoints::Done& done) {
                          if (const auto friendId = baseName(parts[2])) {
                              pictures->giveSticker(request, parts[0], parts[1], friendId, done);
                          } else {
                              done(noPicture(request, noPng));
                          }
                      });
    endpoints.addLate(get, QStringLiteral("/avatars/<avatar>"),
                      [pictures, noPng](const Request& request, const Parts& parts, const Endpoints::Done& done) {
                          if (const auto avatarId = baseName(parts[0])) {
                              pictures->giveAvatar(request, *avatarId, done);
                          } else {
                              done(noPicture(request, noPng));
                          }
                      });
}

} // namespace kovalin::backend
