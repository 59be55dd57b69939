#pragma once

#include "kits/login/default/QXSDKTokenStore.h"

#include <QtCore/QString>

#include <mutex>

namespace kovalin::host {

/// Keeps account links in a file that only its owner can read, in the clear: for the accounts of a development server alone.
class FileTokenStore final : public QXSDKTokenStore {
public:
    explicit FileTokenStore(const QString& file);

    void read(const QString& key, ReadCompletion completion) override;
    void write(const QString& key, const QByteArray& secret) override;
    void remove(const QString& key) override;

private:
    std::mutex _mutex; // held while the file is read or written
    const QString _file;
};

} // namespace kovalin::host
