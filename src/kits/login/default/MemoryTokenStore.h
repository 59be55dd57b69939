#pragma once

#include "kits/login/default/QXSDKTokenStore.h"
#include "platform/dispatch/SerialQueue.h"

#include <QtCore/QHash>

/// Keeps secrets until its end. Completions come on a queue of its own.
class MemoryTokenStore final : public QXSDKTokenStore {
public:
    void read(const QString& key, ReadCompletion completion) override;
    void write(const QString& key, const QByteArray& secret) override;
    void remove(const QString& key) override;

private:
    using Secrets = QHash<QString, QByteArray>;

    const std::shared_ptr<Secrets> _secrets = std::make_shared<Secrets>(); // the queue only
    kovalin::platform::SerialQueue _queue{QStringLiteral("com.vole.connect.MemoryTokenStore")};
};
