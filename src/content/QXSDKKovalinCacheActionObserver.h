#pragma once

#include <QtCore/QUrl>
#include <QtGui/QImage>

#include <functional>
#include <memory>

/// Takes a picture, or a null one where it can't be had.
using KovalinImageCallback = std::function<void(const QImage& image)>;

/// A callback that is known by its pointer, so that it can be cancelled.
using KovalinImageCallbackPtr = std::shared_ptr<const KovalinImageCallback>;

/// Told who waits for a download. Called on the cache's queue.
class QXSDKKovalinCacheActionObserver {
public:
    virtual ~QXSDKKovalinCacheActionObserver();

    /// The callback joined others that wait for the same picture.
    virtual void kovalinCacheDidAddCallback(const KovalinImageCallbackPtr& callback, const QUrl& url) = 0;

    /// The callback was cancelled.
    virtual void kovalinCacheDidRemoveCallback(const KovalinImageCallbackPtr& callback, const QUrl& url) = 0;
};
