#pragma once

/// Told of the sessions of a picker, a resumption counting as a start. Called on the main thread.
class QXSDKKovalinStickerPickerSessionManagerObserver {
public:
    virtual ~QXSDKKovalinStickerPickerSessionManagerObserver();

    virtual void sessionDidStart() = 0;

    /// The session's time is final by now, unless it is resumed.
    virtual void sessionDidEnd() = 0;
};
