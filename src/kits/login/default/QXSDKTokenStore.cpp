#include "kits/login/default/QXSDKTokenStore.h"

#include "kits/login/default/KeychainTokenStore.h"
#include "kits/login/default/MemoryTokenStore.h"

QXSDKTokenStore::~QXSDKTokenStore() = default;

std::shared_ptr<QXSDKTokenStore> QXSDKTokenStore::keychain(const QString& service)
{
    return std::make_shared<KeychainTokenStore>(service);
}

std::shared_ptr<QXSDKTokenStore> QXSDKTokenStore::memory()
{
    return std::make_shared<MemoryTokenStore>();
}
