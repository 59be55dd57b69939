#include "platform/ui/QuickComponents.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Log.h"
#include "platform/ui/QuickObserver.h"
#include "platform/ui/UiLog.h"

#include <QtCore/QCoreApplication>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlProperty>

#include <QtQml/qqml.h>

#include <utility>

namespace kovalin::platform {

namespace {

struct PropertyName {
    QuickProperty property;
    const char* name;
};

struct MethodName {
    QuickMethod method;
    const char* signature;
};

struct KindText {
    const char* qml;
    QList<PropertyName> properties;
    QList<MethodName> methods;
};

/// The caret stands on whole points and blinks, as the platform wants it to, only while the keyboard is the item's. The item
/// itself declares no properties: their descriptions would go with it, and the others' are kept for all items.
constexpr const char* textInput = R"(import QtQuick
TextInput {
    id: input
    selectByMouse: true
    cursorDelegate: Item {
        id: caret
        readonly property bool isUsed: input.cursorVisible && input.activeFocus
        property bool isLit: true
        width: 2
        visible: isUsed
        onXChanged: { isLit = true; if (blinking.running) blinking.restart() }
        Rectangle {
            x: Math.round(caret.x) - caret.x - width / 2
            width: caret.width
            height: caret.height
            color: input.selectionColor
            visible: caret.isLit
        }
        Timer {
            id: blinking
            interval: Qt.styleHints.cursorFlashTime / 2
            repeat: true
            running: caret.isUsed && Qt.styleHints.cursorFlashTime > 1
            onTriggered: caret.isLit = !caret.isLit
            onRunningChanged: caret.isLit = true
        }
    }
})";

KindText textOf(QuickType type)
{
    switch (type) {
    case QuickType::Text:
        return {"import QtQuick\nText {}",
                {{QuickProperty::Text, "text"},
                 {QuickProperty::TextFormat, "textFormat"},
                 {QuickProperty::Font, "font"},
                 {QuickProperty::Color, "color"},
                 {QuickProperty::HorizontalAlignment, "horizontalAlignment"},
                 {QuickProperty::VerticalAlignment, "verticalAlignment"},
                 {QuickProperty::WrapMode, "wrapMode"},
                 {QuickProperty::Elide, "elide"},
                 {QuickProperty::MaximumLineCount, "maximumLineCount"},
                 {QuickProperty::LineCount, "lineCount"},
                 {QuickProperty::ContentWidth, "contentWidth"},
                 {QuickProperty::ContentHeight, "contentHeight"}},
                {}};
    case QuickType::Flickable:
        return {"import QtQuick\nFlickable {}",
                {{QuickProperty::ContentWidth, "contentWidth"},
                 {QuickProperty::ContentHeight, "contentHeight"},
                 {QuickProperty::ContentItem, "contentItem"},
                 {QuickProperty::ContentX, "contentX"},
                 {QuickProperty::ContentY, "contentY"},
                 {QuickProperty::LeftMargin, "leftMargin"},
                 {QuickProperty::TopMargin, "topMargin"},
                 {QuickProperty::RightMargin, "rightMargin"},
                 {QuickProperty::BottomMargin, "bottomMargin"},
                 {QuickProperty::FlickableDirection, "flickableDirection"},
                 {QuickProperty::Interactive, "interactive"},
                 {QuickProperty::PressDelay, "pressDelay"},
                 {QuickProperty::Moving, "moving"},
                 {QuickProperty::Dragging, "dragging"}},
                {{QuickMethod::CancelFlick, "cancelFlick()"}}};
    case QuickType::TextInput:
        return {textInput,
                {{QuickProperty::Text, "text"},
                 {QuickProperty::Font, "font"},
                 {QuickProperty::Color, "color"},
                 {QuickProperty::HorizontalAlignment, "horizontalAlignment"},
                 {QuickProperty::VerticalAlignment, "verticalAlignment"},
                 {QuickProperty::ContentWidth, "contentWidth"},
                 {QuickProperty::ContentHeight, "contentHeight"},
                 {QuickProperty::DisplayText, "displayText"},
                 {QuickProperty::PreeditText, "preeditText"},
                 {QuickProperty::CursorPosition, "cursorPosition"},
                 {QuickProperty::SelectionColor, "selectionColor"},
                 {QuickProperty::SelectedTextColor, "selectedTextColor"},
                 {QuickProperty::MaximumLength, "maximumLength"},
                 {QuickProperty::InputMethodHints, "inputMethodHints"}},
                {}};
    }
    return {};
}

const QString accessibleRole = QStringLiteral("Accessible.role");
const QString accessibleNameProperty = QStringLiteral("Accessible.name");
const QString accessibleIgnored = QStringLiteral("Accessible.ignored");
const QString enterKeyType = QStringLiteral("EnterKey.type");
constexpr const char* accessiblePress = "pressAction()";

} // namespace

void QuickItem::Deleter::operator()(QQuickItem* item) const
{
    // What the item does until it is deleted is nobody's business.
    for (auto* const observer : item->findChildren<QuickObserver*>(QString(), Qt::FindDirectChildrenOnly)) {
        QObject::disconnect(item, nullptr, observer, nullptr);
    }
    item->setParentItem(nullptr);
    item->deleteLater();
}

bool QuickItem::set(QuickProperty property, const QVariant& value)
{
    return _item && _members->properties[static_cast<size_t>(property)].write(_item.get(), value);
}

bool QuickItem::reset(QuickProperty property)
{
    return _item && _members->properties[static_cast<size_t>(property)].reset(_item.get());
}

QVariant QuickItem::get(QuickProperty property) const
{
    return _item ? _members->properties[static_cast<size_t>(property)].read(_item.get()) : QVariant();
}

bool QuickItem::call(QuickMethod method)
{
    return _item && _members->methods[static_cast<size_t>(method)].invoke(_item.get(), Qt::DirectConnection);
}

bool QuickItem::observe(QuickProperty property, std::function<void()> handler)
{
    if (!_item) {
        return false;
    }
    const QMetaMethod changed = _members->properties[static_cast<size_t>(property)].notifySignal();
    return changed.isValid() && (new QuickObserver(*_item, std::move(handler)))->listenTo(changed);
}

QuickComponents& QuickComponents::shared()
{
    assertOnMainThread();
    static QuickComponents* shared = nullptr;
    if (!shared) {
        shared = new QuickComponents;
        qAddPostRoutine([] { delete std::exchange(shared, nullptr); });
    }
    return *shared;
}

QuickComponents::QuickComponents()
    : _engine(std::make_unique<QQmlEngine>())
{
}

QuickComponents::~QuickComponents()
{
    delete _anyItem._item.release(); // at once: no event loop comes any more
}

QuickComponents::Kind& QuickComponents::kind(QuickType type)
{
    auto& kind = _kinds[type];
    if (!kind.component) {
        kind.component = std::make_unique<QQmlComponent>(_engine.get());
        kind.component->setData(textOf(type).qml, QUrl());
    }
    return kind;
}

QuickItem QuickComponents::create(QuickType type, QQuickItem& parent)
{
    assertOnMainThread();
    auto& made = kind(type);
    if (made.isMissing) {
        return {};
    }
    // The object comes without a parent of any kind.
    std::unique_ptr<QObject> object(made.component->create());
    auto* const item = qobject_cast<QQuickItem*>(object.get());
    if (!item) {
        made.isMissing = true;
        KOVALIN_LOG_ERROR(uiLog(), QStringLiteral("A part of Qt Quick is missing: ") +
                                       made.component->errorString().simplified());
        return {};
    }
    if (!made.members) {
        made.members = resolve(type, *item->metaObject());
    }
    QuickItem owner;
    object.release(); // NOLINT(bugprone-unused-return-value): the same object
    owner._item.reset(item);
    owner._members = made.members;
    item->setParentItem(&parent);
    return owner;
}

std::shared_ptr<const QuickItem::Members> QuickComponents::resolve(QuickType type, const QMetaObject& metaObject)
{
    const auto members = std::make_shared<QuickItem::Members>();
    const KindText text = textOf(type);
    for (const auto& [property, name] : text.properties) {
        auto& resolved = members->properties[static_cast<size_t>(property)];
        resolved = metaObject.property(metaObject.indexOfProperty(name));
        Q_ASSERT_X(resolved.isValid(), Q_FUNC_INFO, name);
    }
    for (const auto& [method, signature] : text.methods) {
        auto& resolved = members->methods[static_cast<size_t>(method)];
        resolved = metaObject.method(metaObject.indexOfMethod(signature));
        Q_ASSERT_X(resolved.isValid(), Q_FUNC_INFO, signature);
    }
    return members;
}

QQmlContext* QuickComponents::anyContext()
{
    if (!_anyItem.item()) {
        QQuickItem nobody;
        _anyItem = create(QuickType::Text, nobody);
    }
    return _anyItem.item() ? qmlContext(_anyItem.item()) : nullptr;
}

bool QuickComponents::writeAttached(QQuickItem& item, const QString& name, const QVariant& value)
{
    QQmlContext* const context = anyContext();
    return context && QQmlProperty(&item, name, context).write(value);
}

QString QuickComponents::accessibleName(QQuickItem& item)
{
    QQmlContext* const context = anyContext();
    return context ? QQmlProperty(&item, accessibleNameProperty, context).read().toString() : QString();
}

void QuickComponents::setAccessibleRole(QQuickItem& item, QAccessible::Role role)
{
    writeAttached(item, accessibleRole, static_cast<int>(role));
}

void QuickComponents::setAccessibleName(QQuickItem& item, const QString& name)
{
    writeAttached(item, accessibleNameProperty, name);
}

void QuickComponents::setAccessibleIgnored(QQuickItem& item)
{
    writeAttached(item, accessibleIgnored, true);
}

void QuickComponents::setEnterKeyType(QQuickItem& item, Qt::EnterKeyType type)
{
    writeAttached(item, enterKeyType, static_cast<int>(type));
}

void QuickComponents::connectAccessiblePress(QQuickItem& item, const char* slot)
{
    if (!_anyItem.item()) {
        return; // a role comes first, and didn't
    }
    QObject* const attached = QQmlProperty(&item, accessibleRole, qmlContext(_anyItem.item())).object();
    if (!attached) {
        return;
    }
    const int pressed = attached->metaObject()->indexOfSignal(accessiblePress);
    const int called = item.metaObject()->indexOfMethod(slot);
    if (pressed >= 0 && called >= 0) {
        QObject::connect(attached, attached->metaObject()->method(pressed), &item, item.metaObject()->method(called));
    }
}

} // namespace kovalin::platform
