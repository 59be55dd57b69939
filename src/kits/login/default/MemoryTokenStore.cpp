#include "kits/login/default/MemoryTokenStore.h"

#include <utility>

void MemoryTokenStore::read(const QString& key, ReadCompletion completion)
{
    _queue.async([secrets = _secrets, key, completion = std::move(completion)] {
        const auto found = secrets->constFind(key);
        completion(found != secrets->cend() ? std::optional(*found) : std::nullopt);
    });
}

void MemoryTokenStore::write(const QString& key, const QByteArray& secret)
{
    _queue.async([secrets = _secrets, key, secret] { secrets->insert(key, secret); });
}

void MemoryTokenStore::remove(const QString& key)
{
    _queue.async([secrets = _secrets, key] { secrets->remove(key); });
}
