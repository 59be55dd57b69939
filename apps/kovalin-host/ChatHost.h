#pragma once

#include "kovalin-host/EmbeddedItem.h"
#include "kovalin-host/HostOptions.h"
#include "picker/content/QXSDKKovalinSearchMode.h"

#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QVariantList>
#include <QtGui/QImage>

#include <memory>
#include <utility>
#include <vector>

class QXSDKKovalinIconView;
class QXSDKKovalinStickerPickerViewController;
class QXSDKKovalinStickerPickerViewControllerDelegate;
class QXSDKLoginStatusObserver;

namespace kovalin::host {

class HostRecord;

/// The chat behind the window: who is written to, what was written, and the pickers and icons in it. Main thread.
///
/// Pickers take their colours and their direction when they are made, so a change of either makes them anew.
class ChatHost final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantList friends READ friends CONSTANT)
    Q_PROPERTY(QString friendId READ friendId WRITE setFriendId NOTIFY friendChanged)
    Q_PROPERTY(QString friendName READ friendName NOTIFY friendChanged)
    Q_PROPERTY(QVariantList messages READ messages NOTIFY messagesChanged)
    Q_PROPERTY(bool isDark READ isDark WRITE setDark NOTIFY lookChanged)
    Q_PROPERTY(bool isMirrored READ isMirrored WRITE setMirrored NOTIFY lookChanged)
    Q_PROPERTY(bool isLoggedIn READ isLoggedIn NOTIFY accountChanged)
    Q_PROPERTY(bool isPickerOpen READ isPickerOpen WRITE setPickerOpen NOTIFY pickerOpenChanged)
    Q_PROPERTY(int pickerCount READ pickerCount CONSTANT)
    Q_PROPERTY(int iconCount READ iconCount CONSTANT)

public:
    /// The kits are set up by now. The pickers begin to load when they get their places.
    ChatHost(const HostOptions& options, std::shared_ptr<HostRecord> record);
    ~ChatHost() override;
    Q_DISABLE_COPY_MOVE(ChatHost)

    // For the window

    /// {"id", "name"} each; the first has an empty id and is everybody.
    [[nodiscard]] QVariantList friends() const { return _friends; }
    [[nodiscard]] QString friendId() const { return _friendId; }
    [[nodiscard]] QString friendName() const;
    void setFriendId(const QString& id);

    /// {"isMine", "author", "text", "image"} each, the latest first; an image has no text.
    [[nodiscard]] QVariantList messages() const { return _messages.value(_friendId); }
    Q_INVOKABLE void send(const QString& text);
    /// The user types: what fits is shown on the icon, and in the picker before the popular stickers.
    Q_INVOKABLE void typeText(const QString& text);

    [[nodiscard]] bool isDark() const { return _isDark; }
    void setDark(bool isDark);
    [[nodiscard]] bool isMirrored() const { return _isMirrored; }
    void setMirrored(bool isMirrored);

    [[nodiscard]] bool isLoggedIn() const;
    Q_INVOKABLE void logInOrOut();

    [[nodiscard]] bool isPickerOpen() const { return _isPickerOpen; }
    void setPickerOpen(bool isOpen);

    [[nodiscard]] int pickerCount() const { return static_cast<int>(_pickers.size()); }
    [[nodiscard]] int iconCount() const { return static_cast<int>(_icons.size()); }
    Q_INVOKABLE void placePicker(int picker, kovalin::host::EmbeddedItem* place);
    Q_INVOKABLE void placeIcon(int icon, kovalin::host::EmbeddedItem* place);

    // For a script; pickers are counted from 0

    [[nodiscard]] QXSDKKovalinStickerPickerViewController& picker(int picker) const;
    /// Null before it has one.
    [[nodiscard]] EmbeddedItem* placeOfPicker(int picker) const;
    /// To all pickers, as a host would.
    void setTerm(const QString& term, QXSDKKovalinSearchMode mode);

Q_SIGNALS:
    void friendChanged();
    void messagesChanged();
    void lookChanged();
    void accountChanged();
    void pickerOpenChanged();
    /// What was typed is sent, or a sticker in its place.
    void textCleared();

private:
    friend class PickerDelegate;
    struct Picker {
        std::shared_ptr<QXSDKKovalinStickerPickerViewController> controller;
        std::shared_ptr<QXSDKKovalinStickerPickerViewControllerDelegate> delegate;
        QPointer<EmbeddedItem> place;
    };

    void readFriends(const QString& contentFolder);
    void makePicker(int picker);
    void makePickersAnew();
    void addMessage(const QVariantMap& message);
    void stickerWasChosen(int picker, const QString& url, const QImage& image);
    void record(int picker, QJsonObject call);

    const std::shared_ptr<HostRecord> _record;
    QVariantList _friends;
    QString _friendId;
    QHash<QString, QVariantList> _messages; // by friend id
    bool _isDark;
    bool _isMirrored;
    bool _isPickerOpen = true;
    bool _isTyped = false; // the field has text
    std::pair<QString, QXSDKKovalinSearchMode> _term;
    std::vector<Picker> _pickers;
    std::vector<std::shared_ptr<QXSDKKovalinIconView>> _icons;
    std::shared_ptr<QXSDKLoginStatusObserver> _loginObserver;
};

} // namespace kovalin::host
