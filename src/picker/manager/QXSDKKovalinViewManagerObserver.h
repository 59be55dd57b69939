#pragma once

class QXSDKKovalinViewProtocol;

/// Told which view fills a picker. Called on the main thread; may do anything.
class QXSDKKovalinViewManagerObserver {
public:
    virtual ~QXSDKKovalinViewManagerObserver();

    /// Another view is current, and lies in the container by now. Null for none.
    virtual void currentViewChanged(QXSDKKovalinViewProtocol* view) = 0;
};
