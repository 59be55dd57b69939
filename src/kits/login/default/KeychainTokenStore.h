#pragma once

#include "kits/login/default/QXSDKTokenStore.h"

/// The system's keychain. Its jobs run on the main thread, one after the other, and so do completions; none of them waits there.
class KeychainTokenStore final : public QXSDKTokenStore {
public:
    explicit KeychainTokenStore(const QString& service);

    void read(const QString& key, ReadCompletion completion) override;
    void write(const QString& key, const QByteArray& secret) override;
    void remove(const QString& key) override;

private:
    const QString _service;
};
