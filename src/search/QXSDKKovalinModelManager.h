#pragma once

#include "platform/dispatch/SerialQueue.h"

#include <QtCore/QString>

#include <functional>
#include <memory>

class QXNativeModelFileBuffer;

/// Delivers models: fetches what the server offers and opens what is cached. Any thread.
class QXSDKKovalinModelManager final {
public:
    /// Called exactly once, on the manager's queue. The buffer's state is invalid where there is no model; null where opening
    /// it failed in a way that has no other answer.
    using LoadCompletion = std::function<void(const std::shared_ptr<QXNativeModelFileBuffer>& buffer)>;

    static constexpr auto kQXSDKKovalinModelManagerQueueName = "com.vole.connect.QXSDKKovalinModelManager";

    /// The one instance of the process, made on first use and never destroyed.
    [[nodiscard]] static QXSDKKovalinModelManager& shared();

    QXSDKKovalinModelManager();
    Q_DISABLE_COPY_MOVE(QXSDKKovalinModelManager)

    /// Updates the model if the server offers a newer one, and opens what is cached then, be it new or old. Loads run one after
    /// the other, each blocking the queue for as long as its requests take.
    void loadModel(const QString& modelName, LoadCompletion completion);

private:
    kovalin::platform::SerialQueue _queue;
};
