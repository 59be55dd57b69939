// Linked into a program it ends it, with 0, once a window or a widget has drawn a frame with a picker in it.
#include <QtGui/QGuiApplication>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

namespace {

bool hasPicker(const QQuickItem& item)
{
    if (item.objectName() == QStringLiteral("qxsdk_kovalin_container")) {
        return true;
    }
    for (const QQuickItem* const child : item.childItems()) {
        if (hasPicker(*child)) {
            return true;
        }
    }
    return false;
}

/// Comes across each window by the events that it gets.
class Watcher final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        for (QWindow* const window : QGuiApplication::allWindows()) {
            auto* const scene = qobject_cast<QQuickWindow*>(window);
            if (scene && !_scenes.contains(scene)) {
                _scenes.append(scene);
                connect(scene, &QQuickWindow::afterRendering, this, [scene] {
                    if (hasPicker(*scene->contentItem())) {
                        QCoreApplication::quit();
                    }
                });
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QList<QQuickWindow*> _scenes; // compared alone
};

void watch()
{
    auto* const application = QCoreApplication::instance();
    application->installEventFilter(new Watcher(application));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)
