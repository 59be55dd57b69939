#include "qml/QXSDKKovalinQmlTypes.h"

#include "qml/KovalinClient.h"
#include "qml/KovalinIcon.h"
#include "qml/KovalinStickerPicker.h"
#include "qml/KovalinTheme.h"

#include <QtQml/qqml.h>

#include <mutex>

namespace {

void registerTypes()
{
    constexpr const char* module = "QXSDKKovalinKit";
    constexpr int majorVersion = 1;
    qmlRegisterModule(module, majorVersion, 0);
    // Items have what all versions of Qt Quick gave them.
    qmlRegisterAnonymousType<QQuickItem, 254>(module, majorVersion);
    qmlRegisterTypesAndRevisions<KovalinTheme, KovalinStickerPicker, KovalinIcon, KovalinClient>(module, majorVersion,
                                                                                                 nullptr);
}

} // namespace

void QXSDKKovalinRegisterQmlTypes()
{
    static std::once_flag once;
    std::call_once(once, registerTypes);
}
