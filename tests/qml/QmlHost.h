#pragma once

#include "platform/foundation/CachesDirectory.h"
#include "qml/QXSDKKovalinQmlTypes.h"
#include "support/WaitFor.h"

#include <QtCore/QTemporaryDir>
#include <QtCore/QVariantMap>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickItem>

#include <gtest/gtest.h>

#include <memory>

namespace kovalin::test {

/// A host of QML with the module's types, in an engine of its own. What is kept on disk is kept for the process.
class QmlHost : public testing::Test {
protected:
    QmlHost()
    {
        static const QTemporaryDir folder;
        platform::setCachesDirectory(folder.path());
        QXSDKKovalinRegisterQmlTypes();
    }
    ~QmlHost() override
    {
        root.reset();
        engine.reset();
        drainMainQueue();
    }

    /// Makes `root` of a document, to which the imports are added.
    void load(const char* text, const QVariantMap& properties = {})
    {
        QQmlComponent component(engine.get());
        component.setData(QByteArray("import QtQuick\nimport QXSDKKovalinKit\n") + text, QUrl());
        root.reset(component.createWithInitialProperties(properties));
        ASSERT_TRUE(root) << component.errorString().toStdString();
    }

    /// By its object name.
    template <class T>
    [[nodiscard]] T* find(const char* name) const
    {
        return root->findChild<T*>(QString::fromLatin1(name));
    }

    std::unique_ptr<QQmlEngine> engine = std::make_unique<QQmlEngine>();
    std::unique_ptr<QObject> root;
};

} // namespace kovalin::test
