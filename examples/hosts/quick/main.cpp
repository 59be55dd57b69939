// A host in C++ alone: a Qt Quick window with a sticker picker in it.
//
//     kovalin_quick_host --backend http://127.0.0.1:8080
//
// draws the stickers of a development server (kovalin-backend --port 8080 --content …).
#include <QtCore/QCommandLineParser>
#include <QtCore/QTextStream>
#include <QtGui/QGuiApplication>
#include <QtQuick/QQuickWindow>

#include <QXSDKKovalinKit/QXSDKKovalinKit.h>

#include <memory>

namespace {

/// Who this host is, and where its servers are. Comes before anything else of the library.
void setUp(const QString& backend)
{
    QXSDKClientSetup setup;
    setup.clientId = QStringLiteral("example-host");
    setup.contentBaseUrl = backend;
    setup.authenticationBaseUrl = backend + QStringLiteral("/accounts");
    setup.apiBaseUrl = backend + QStringLiteral("/api");
    QXSDKClientSetup::setShared(setup);

    // The kits that come with the library. A host that has something of its own for one of these installs that.
    QXSDKDynamicConfigManager::setShared(std::make_shared<QXSDKHttpDynamicConfigManager>());
    QXSDKOperationalMetricsQueue::setSharedInstance(std::make_shared<QXSDKHttpOperationalMetricsQueue>());
    QXSDKAnalyticsEventsQueue::setSharedInstance(std::make_shared<QXSDKHttpAnalyticsEventsQueue>());
    QXSDKLoginClient::setShared(std::make_shared<QXSDKOAuthLoginClient>());
}

/// What becomes of a chosen sticker: here a line of text, in a chat a message.
class Chat final : public QXSDKKovalinStickerPickerViewControllerDelegate {
public:
    void kovalinStickerPickerViewControllerDidSelectKovalinWithURL(QXSDKKovalinStickerPickerViewController& /*picker*/,
                                                                   const QString& url, const QImage& image) override
    {
        QTextStream(stdout) << url << ", " << image.width() << " x " << image.height() << " pixels" << Qt::endl;
    }
};

/// A window that the picker fills, and that tells it when it comes on screen and leaves it.
class Window final : public QQuickWindow {
public:
    Window()
    {
        _picker->setDelegate(_chat);
        _picker->view()->setParentItem(contentItem());
        connect(this, &QWindow::widthChanged, this, [this] { resizePicker(); });
        connect(this, &QWindow::heightChanged, this, [this] { resizePicker(); });
        connect(this, &QWindow::visibleChanged, this, [this](bool isShown) {
            if (isShown) {
                _picker->viewWillAppear();
            } else {
                _picker->viewWillDisappear();
            }
        });
        resize(412, 480); // points
    }
    ~Window() override
    {
        // While there still is a picker to be told of it.
        hide();
        disconnect(this, nullptr, this, nullptr);
    }

private:
    void resizePicker() { _picker->view()->setSize(size()); }

    const std::shared_ptr<QXSDKKovalinStickerPickerViewController> _picker =
        QXSDKKovalinStickerPickerViewController::create(
            QXSDKKovalinStickerPickerConfigBuilder().withTheme(QXSDKKovalinStickerPickerTheme::lightTheme()).build());
    // The picker holds it weakly.
    const std::shared_ptr<Chat> _chat = std::make_shared<Chat>();
};

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    // By these the system knows the folder in which pictures, packs and models are kept.
    QCoreApplication::setOrganizationName(QStringLiteral("Example"));
    QCoreApplication::setApplicationName(QStringLiteral("kovalin_quick_host"));

    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption backend(QStringLiteral("backend"),
                                     QStringLiteral("The server, without a slash at its end."), QStringLiteral("URL"),
                                     QStringLiteral("http://127.0.0.1:8080"));
    const QCommandLineOption quitWhenShown(QStringLiteral("quit-when-shown"),
                                           QStringLiteral("End once a frame with the picker has been drawn."));
    parser.addOptions({backend, quitWhenShown});
    parser.process(application);

    setUp(parser.value(backend));
    Window window;
    if (parser.isSet(quitWhenShown)) {
        QObject::connect(&window, &QQuickWindow::frameSwapped, &application, &QCoreApplication::quit);
    }
    window.show();
    return QGuiApplication::exec();
}
