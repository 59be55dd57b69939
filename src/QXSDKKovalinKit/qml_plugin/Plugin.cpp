#include "qml/QXSDKKovalinQmlTypes.h"

#include <QtQml/QQmlExtensionPlugin>

/// What a QML engine loads for "import QXSDKKovalinKit".
class QXSDKKovalinKitPlugin final : public QQmlExtensionPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    void registerTypes(const char* /*uri*/) override { QXSDKKovalinRegisterQmlTypes(); }
};

#include "Plugin.moc"
