#include "kovalin-host/ChatHost.h"

#include "kits/login/QXSDKLoginClient.h"
#include "kovalin-host/HostRecord.h"
#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"
#include "picker/controller/QXSDKKovalinStickerPickerViewController.h"
#include "picker/icon/QXSDKKovalinIconView.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QGuiApplication>

namespace kovalin::host {

/// Tells the chat what its picker tells.
class PickerDelegate final : public QXSDKKovalinStickerPickerViewControllerDelegate {
public:
    PickerDelegate(ChatHost& chat, int picker)
        : _chat(chat)
        , _picker(picker)
    {
    }

    void kovalinStickerPickerViewControllerDidSelectKovalinWithURL(QXSDKKovalinStickerPickerViewController& /*picker*/,
                                                                   const QString& url, const QImage& image) override
    {
        _chat.stickerWasChosen(_picker, url, image);
    }
    void
    kovalinStickerPickerViewControllerDidSelectSearchTag(QXSDKKovalinStickerPickerViewController& /*picker*/) override
    {
        _chat.record(_picker, {{QStringLiteral("call"), QStringLiteral("didSelectSearchTag")}});
    }
    void kovalinStickerPickerViewControllerSearchFieldFocusDidChangeWithFocus(
        QXSDKKovalinStickerPickerViewController& /*picker*/, bool hasFocus) override
    {
        _chat.record(_picker, {{QStringLiteral("call"), QStringLiteral("searchFieldFocusDidChange")},
                               {QStringLiteral("focus"), hasFocus}});
    }

private:
    ChatHost& _chat;
    const int _picker;
};

namespace {

class LoginObserver final : public QXSDKLoginStatusObserver {
public:
    LoginObserver(ChatHost& chat, std::shared_ptr<HostRecord> record)
        : _chat(chat)
        , _record(std::move(record))
    {
    }
    void qxsdkLoginLinkDidSucceed() override { tell(QStringLiteral("linked")); }
    void qxsdkLoginLinkDidFail() override { tell(QStringLiteral("failed")); }
    void qxsdkLoginDidUnlink() override { tell(QStringLiteral("unlinked")); }

private:
    void tell(const QString& what)
    {
        _record->addLogin(what);
        Q_EMIT _chat.accountChanged();
    }

    ChatHost& _chat;
    const std::shared_ptr<HostRecord> _record;
};

QVariantMap message(bool isMine, const QString& author, const QString& text)
{
    return {{QStringLiteral("isMine"), isMine},
            {QStringLiteral("author"), author},
            {QStringLiteral("text"), text},
            {QStringLiteral("image"), QImage()}};
}

/// What was said before; the latest first.
QVariantList beginningWith(const QString& author)
{
    return {message(false, author, QStringLiteral("Perfect, see you at seven")),
            message(true, {}, QStringLiteral("Yes! I'll bring the cake")),
            message(false, author, QStringLiteral("Are you coming on Saturday?"))};
}

} // namespace

ChatHost::ChatHost(const HostOptions& options, std::shared_ptr<HostRecord> record)
    : _record(std::move(record))
    , _isDark(options.isDark)
    , _isMirrored(options.isMirrored)
    , _term({}, QXSDKKovalinSearchModeBlend)
    , _pickers(static_cast<std::size_t>(options.pickers))
    , _icons(static_cast<std::size_t>(options.icons))
    , _loginObserver(std::make_shared<LoginObserver>(*this, _record))
{
    readFriends(options.contentFolder);
    QGuiApplication::setLayoutDirection(_isMirrored ? Qt::RightToLeft : Qt::LeftToRight);
    for (auto& icon : _icons) {
        icon = QXSDKKovalinIconView::create();
    }
    for (int picker = 0; picker < pickerCount(); ++picker) {
        makePicker(picker);
    }
    QXSDKLoginClient::addLoginStatusObserver(_loginObserver);
}

ChatHost::~ChatHost() = default;

// Friends and messages

void ChatHost::readFriends(const QString& contentFolder)
{
    const auto add = [this](const QString& id, const QString& name, const QString& author) {
        _friends.append(QVariantMap{{QStringLiteral("id"), id}, {QStringLiteral("name"), name}});
        _messages.insert(id, beginningWith(author));
    };
    QFile file(contentFolder + QStringLiteral("/users.json"));
    const auto document = file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()) : QJsonDocument();
    const QJsonArray users = document[u"users"].toArray();
    add({}, QStringLiteral("Everyone"), users.isEmpty() ? QStringLiteral("Bea") : users[0][u"name"].toString());
    for (const QJsonValue& user : users) {
        add(user[u"id"].toString(), user[u"name"].toString(), {});
    }
}

QString ChatHost::friendName() const
{
    for (const QVariant& entry : _friends) {
        const QVariantMap person = entry.toMap();
        if (person[QStringLiteral("id")].toString() == _friendId) {
            return person[QStringLiteral("name")].toString();
        }
    }
    return _friendId;
}

void ChatHost::setFriendId(const QString& id)
{
    if (id == _friendId) {
        return;
    }
    _friendId = id;
    if (!_messages.contains(id)) {
        _messages.insert(id, beginningWith({}));
    }
    for (const Picker& picker : _pickers) {
        picker.controller->setFriendUserId(id);
    }
    Q_EMIT friendChanged();
    Q_EMIT messagesChanged();
}

void ChatHost::addMessage(const QVariantMap& message)
{
    _messages[_friendId].prepend(message);
    Q_EMIT messagesChanged();
}

void ChatHost::send(const QString& text)
{
    if (text.trimmed().isEmpty()) {
        return;
    }
    addMessage(message(true, {}, text));
    typeText({});
    Q_EMIT textCleared();
}

void ChatHost::stickerWasChosen(int picker, const QString& url, const QImage& image)
{
    record(picker, {{QStringLiteral("call"), QStringLiteral("didSelectKovalinWithURL")},
                    {QStringLiteral("url"), url},
                    {QStringLiteral("image"), QJsonArray{image.width(), image.height()}}});
    QVariantMap sticker = message(true, {}, {});
    sticker.insert(QStringLiteral("image"), image);
    addMessage(sticker);
    if (_isTyped) {
        typeText({});
        Q_EMIT textCleared();
    }
}

void ChatHost::record(int picker, QJsonObject call)
{
    call.insert(QStringLiteral("picker"), picker + 1);
    _record->addDelegateCall(call);
}

void ChatHost::typeText(const QString& text)
{
    _isTyped = !text.isEmpty();
    setTerm(text, QXSDKKovalinSearchModeBlend);
}

void ChatHost::setTerm(const QString& term, QXSDKKovalinSearchMode mode)
{
    _term = {term, mode};
    for (const Picker& picker : _pickers) {
        picker.controller->setSearchTerm(term, mode);
    }
}

// The account

bool ChatHost::isLoggedIn() const
{
    return QXSDKLoginClient::shared()->isUserLoggedIn();
}

void ChatHost::logInOrOut()
{
    const auto login = QXSDKLoginClient::shared();
    if (login->isUserLoggedIn()) {
        login->unlink();
    } else {
        login->loginFromViewController(nullptr, {});
    }
}

// Looks

void ChatHost::setDark(bool isDark)
{
    if (std::exchange(_isDark, isDark) != isDark) {
        makePickersAnew();
        Q_EMIT lookChanged();
    }
}

void ChatHost::setMirrored(bool isMirrored)
{
    if (std::exchange(_isMirrored, isMirrored) != isMirrored) {
        QGuiApplication::setLayoutDirection(isMirrored ? Qt::RightToLeft : Qt::LeftToRight);
        makePickersAnew();
        Q_EMIT lookChanged();
    }
}

void ChatHost::setPickerOpen(bool isOpen)
{
    if (std::exchange(_isPickerOpen, isOpen) == isOpen) {
        return;
    }
    if (isOpen) {
        Q_EMIT pickerOpenChanged();
    }
    for (const Picker& picker : _pickers) {
        isOpen ? picker.controller->viewWillAppear() : picker.controller->viewWillDisappear();
    }
    if (!isOpen) {
        Q_EMIT pickerOpenChanged();
    }
}

// Pickers and icons

void ChatHost::makePicker(int picker)
{
    // By day the default one, whose pills are colourful.
    const auto theme = _isDark ? QXSDKKovalinStickerPickerTheme::darkTheme() : nullptr;
    Picker& made = _pickers[static_cast<std::size_t>(picker)];
    made.controller = QXSDKKovalinStickerPickerViewController::create(
        QXSDKKovalinStickerPickerConfigBuilder().withTheme(theme).build());
    made.delegate = std::make_shared<PickerDelegate>(*this, picker);
    made.controller->setDelegate(made.delegate);
    made.controller->setFriendUserId(_friendId);
    if (!_term.first.isEmpty()) {
        made.controller->setSearchTerm(_term.first, _term.second);
    }
    // An icon shows what one picker finds for the text that stands beside it.
    if (picker == 0) {
        for (const auto& icon : _icons) {
            made.controller->attachKovalinIcon(icon);
        }
    }
}

void ChatHost::makePickersAnew()
{
    for (int picker = 0; picker < pickerCount(); ++picker) {
        Picker& old = _pickers[static_cast<std::size_t>(picker)];
        if (old.place && _isPickerOpen) {
            old.controller->viewWillDisappear();
        }
        EmbeddedItem* const place = old.place;
        makePicker(picker);
        if (place) {
            placePicker(picker, place);
        }
    }
}

void ChatHost::placePicker(int picker, EmbeddedItem* place)
{
    Picker& placed = _pickers[static_cast<std::size_t>(picker)];
    placed.place = place;
    place->setContent(placed.controller->view());
    if (_isPickerOpen) {
        placed.controller->viewWillAppear();
    }
}

void ChatHost::placeIcon(int icon, EmbeddedItem* place)
{
    place->setContent(_icons[static_cast<std::size_t>(icon)].get());
}

QXSDKKovalinStickerPickerViewController& ChatHost::picker(int picker) const
{
    return *_pickers[static_cast<std::size_t>(picker)].controller;
}

EmbeddedItem* ChatHost::placeOfPicker(int picker) const
{
    return _pickers[static_cast<std::size_t>(picker)].place;
}

} // namespace kovalin::host
