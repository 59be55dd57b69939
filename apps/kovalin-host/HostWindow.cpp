#include "kovalin-host/HostWindow.h"

#include "kovalin-host/ChatPicture.h"
#include "picker/controller/QXSDKKovalinStickerPickerViewController.h"
#include "shared/BadInput.h"

#include <QtQml/QQmlError>

#include <QtQml/qqml.h>

namespace kovalin::host {

namespace {

void registerTypes()
{
    constexpr const char* module = "kovalin.host";
    qmlRegisterType<EmbeddedItem>(module, 1, 0, "EmbeddedItem");
    qmlRegisterType<ChatPicture>(module, 1, 0, "ChatPicture");
}

} // namespace

HostWindow::HostWindow(const HostOptions& options, const std::shared_ptr<HostRecord>& record)
    : _chat(std::make_unique<ChatHost>(options, record))
    , _view(std::make_unique<QQuickView>())
{
    registerTypes();
    _view->setTitle(QStringLiteral("Kovalin host"));
    _view->setResizeMode(QQuickView::SizeRootObjectToView);
    _view->resize(options.size);
    _view->setInitialProperties({{QStringLiteral("host"), QVariant::fromValue<QObject*>(_chat.get())}});
    _view->setSource(QUrl(QStringLiteral("qrc:/kovalin-host/Main.qml")));
    if (_view->status() != QQuickView::Ready) {
        QStringList faults;
        for (const QQmlError& error : _view->errors()) {
            faults.append(error.toString());
        }
        throw cli::BadInput("the window: " + faults.join(QStringLiteral("; ")).toStdString());
    }
    _view->show();
    _view->requestActivate();
}

HostWindow::~HostWindow()
{
    // The items in the windows are the chat's.
    _view.reset();
    _other.reset();
}

QQuickWindow& HostWindow::windowOfPicker(int picker)
{
    QQuickWindow* const window = _chat->picker(picker).view()->window();
    return window ? *window : *_view;
}

void HostWindow::movePicker(int picker, bool isToOther)
{
    QQuickItem* const view = _chat->picker(picker).view();
    if (!isToOther) {
        _chat->placeOfPicker(picker)->setContent(view);
        return;
    }
    if (!_other) {
        _other = std::make_unique<QQuickWindow>();
        _other->setTitle(QStringLiteral("Kovalin host: another window"));
        _other->resize(_view->size());
        _other->show();
    }
    view->setParentItem(_other->contentItem());
}

ItemRoots HostWindow::roots(int picker) const
{
    ItemRoots roots{_chat->picker(picker).view()};
    for (int other = 0; other < _chat->pickerCount(); ++other) {
        if (other != picker) {
            roots.append(_chat->picker(other).view());
        }
    }
    roots.append(_view->rootObject());
    if (_other) {
        roots.append(_other->contentItem());
    }
    return roots;
}

} // namespace kovalin::host
