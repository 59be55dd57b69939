#pragma once

#include <QtCore/QtGlobal>

/// Which of the full-size views of a picker one is. The numbers go into analytics; 0 stands for no view.
enum QXSDKKovalinViewType : qint32 {
    /// Stickers, tags and the search.
    QXSDKKovalinViewTypeContent = 1,
    /// The account has no avatar yet.
    QXSDKKovalinViewTypeCreateAvatar = 2,
    /// No account is linked.
    QXSDKKovalinViewTypeLogin = 3,
    /// The account doesn't let the host see its avatar.
    QXSDKKovalinViewTypeNoPermission = 4,
    /// The content could not be loaded.
    QXSDKKovalinViewTypeError = 5,
};
