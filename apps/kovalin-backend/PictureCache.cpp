#include "kovalin-backend/PictureCache.h"

#include <utility>

namespace kovalin::backend {

namespace {

constexpr qsizetype mostBytes = qsizetype(32) * 1024 * 1024; // some thousand pictures of the usual size

} // namespace

PictureCache::PictureCache(Post post)
    : _post(std::move(post))
    , _pictures(mostBytes)
{
}

void PictureCache::find(const QByteArray& key, Draw draw, Drawn drawn)
{
    if (const QByteArray* const picture = _pictures.object(key)) {
        drawn(*picture);
        return;
    }
    std::vector<Drawn>& waiting = _waiting[key];
    waiting.push_back(std::move(drawn));
    if (waiting.size() > 1) {
        return;
    }
    _queue.async([weak = weak_from_this(), post = _post, key, draw = std::move(draw)] {
        if (weak.expired()) {
            return;
        }
        post([weak, key, picture = draw()] {
            if (const auto self = weak.lock()) {
                self->_add(key, picture);
            }
        });
    });
}

void PictureCache::_add(const QByteArray& key, const QByteArray& picture)
{
    _pictures.insert(key, new QByteArray(picture), picture.size()); // which takes it
    const auto waiting = _waiting.extract(key);
    for (const Drawn& drawn : waiting.mapped()) {
        drawn(picture);
    }
}

} // namespace kovalin::backend
