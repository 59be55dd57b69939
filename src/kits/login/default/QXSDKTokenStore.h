#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <functional>
#include <memory>
#include <optional>

/// Keeps the secrets of linked accounts from one run of the program to the next, by key. Any thread.
///
/// What is asked of one store takes effect in the order of the calls. Nothing waits: all operations return at once.
class QXSDKKOVALINKIT_EXPORT QXSDKTokenStore {
public:
    /// `secret` is absent where there is none, or where it can't be had.
    using ReadCompletion = std::function<void(const std::optional<QByteArray>& secret)>;

    virtual ~QXSDKTokenStore();

    /// Gives what was written last. The completion is called at most once, on any thread, perhaps before this returns; not at all
    /// where the keychain never answers, or the application object goes before it does.
    virtual void read(const QString& key, ReadCompletion completion) = 0;

    /// Replaces what is kept. Where that fails nothing is kept, or the old.
    virtual void write(const QString& key, const QByteArray& secret) = 0;

    /// Does nothing where nothing is kept.
    virtual void remove(const QString& key) = 0;

    /// A store over the system's keychain; `service` is what the entries are shown under there. Never in a plain file: where there
    /// is no keychain nothing is kept, with a log line.
    [[nodiscard]] static std::shared_ptr<QXSDKTokenStore> keychain(const QString& service);

    /// A store that forgets everything at its end.
    [[nodiscard]] static std::shared_ptr<QXSDKTokenStore> memory();
};
