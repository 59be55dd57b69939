// A host of widgets: a chat's window with a line to type in and a sticker picker below it.
//
//     kovalin_widgets_host --backend http://127.0.0.1:8080
//
// draws the stickers of a development server (kovalin-backend --port 8080 --content …).
#include <QtCore/QCommandLineParser>
#include <QtQuick/QQuickWindow>
#include <QtQuickWidgets/QQuickWidget>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QVBoxLayout>

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

/// The picker as a widget.
class PickerWidget final : public QQuickWidget {
public:
    explicit PickerWidget(const std::shared_ptr<QXSDKKovalinStickerPickerViewController>& picker)
        : _picker(picker)
    {
        _picker->view()->setParentItem(quickWindow()->contentItem());
        setFocusPolicy(Qt::StrongFocus); // for the search field
    }

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QQuickWidget::resizeEvent(event);
        // What reaches out of an item that it lies in counts as not visible.
        quickWindow()->contentItem()->setSize(size());
        _picker->view()->setSize(size());
    }
    void showEvent(QShowEvent* event) override
    {
        QQuickWidget::showEvent(event);
        _picker->viewWillAppear();
    }
    void hideEvent(QHideEvent* event) override
    {
        _picker->viewWillDisappear();
        QQuickWidget::hideEvent(event);
    }

private:
    const std::shared_ptr<QXSDKKovalinStickerPickerViewController> _picker;
};

/// The window, which shows what was chosen.
class Chat final : public QWidget, public QXSDKKovalinStickerPickerViewControllerDelegate {
public:
    /// The picker holds its delegate weakly.
    static std::shared_ptr<Chat> create()
    {
        auto chat = std::make_shared<Chat>();
        chat->_picker->setDelegate(chat);
        return chat;
    }
    Chat()
    {
        auto* const column = new QVBoxLayout(this);
        column->addWidget(_chosen);
        column->addWidget(_text);
        column->addWidget(_stickers, 1);
        // Stickers for what is being typed come before the popular ones.
        connect(_text, &QLineEdit::textChanged, this,
                [this](const QString& text) { _picker->setSearchTerm(text, QXSDKKovalinSearchModeBlend); });
        resize(412, 560); // points
    }

    void kovalinStickerPickerViewControllerDidSelectKovalinWithURL(QXSDKKovalinStickerPickerViewController& /*picker*/,
                                                                   const QString& /*url*/, const QImage& image) override
    {
        _chosen->setPixmap(QPixmap::fromImage(image));
    }

    [[nodiscard]] QQuickWindow* scene() const { return _stickers->quickWindow(); }

private:
    const std::shared_ptr<QXSDKKovalinStickerPickerViewController> _picker =
        QXSDKKovalinStickerPickerViewController::create();
    // Children of the window, which go with it.
    QLabel* const _chosen = new QLabel(this);
    QLineEdit* const _text = new QLineEdit(this);
    PickerWidget* const _stickers = new PickerWidget(_picker);
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    // By these the system knows the folder in which pictures, packs and models are kept.
    QCoreApplication::setOrganizationName(QStringLiteral("Example"));
    QCoreApplication::setApplicationName(QStringLiteral("kovalin_widgets_host"));

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
    const auto chat = Chat::create();
    if (parser.isSet(quitWhenShown)) {
        QObject::connect(chat->scene(), &QQuickWindow::afterRendering, &application, &QCoreApplication::quit);
    }
    chat->show();
    return QApplication::exec();
}
