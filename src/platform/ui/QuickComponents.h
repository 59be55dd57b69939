#pragma once

#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <QtCore/QVariant>
#include <QtGui/QAccessible>
#include <QtQuick/QQuickItem>

#include <array>
#include <functional>
#include <map>
#include <memory>

QT_BEGIN_NAMESPACE
class QQmlComponent;
class QQmlContext;
class QQmlEngine;
QT_END_NAMESPACE

namespace kovalin::platform {

/// Items that Qt Quick has and offers no C++ class for.
enum class QuickType {
    Text,
    Flickable,
    TextInput,
};

/// Their properties that views use.
enum class QuickProperty {
    Text,
    TextFormat,
    Font,
    Color,
    HorizontalAlignment, ///< Can be reset: then it follows the text's direction.
    VerticalAlignment,
    WrapMode,
    Elide,
    MaximumLineCount, ///< Can be reset.
    LineCount,        ///< Read only.
    ContentWidth,     ///< Of a text read only.
    ContentHeight,    ///< Of a text read only.
    ContentItem,      ///< Read only. What a Flickable moves.
    ContentX,
    ContentY,
    LeftMargin,
    TopMargin,
    RightMargin,
    BottomMargin,
    FlickableDirection,
    Interactive,
    PressDelay,
    Moving,      ///< Read only.
    Dragging,    ///< Read only.
    DisplayText, ///< With what an input method composes. Read only.
    PreeditText, ///< Read only.
    CursorPosition,
    SelectionColor, ///< The caret's too.
    SelectedTextColor,
    MaximumLength,
    InputMethodHints,
    Count,
};

/// Their operations without arguments that views use.
enum class QuickMethod {
    CancelFlick,
    Count,
};

/// The owner of such an item. Main thread only. The item is deleted in a later turn of the event loop.
class QuickItem final {
public:
    QuickItem() = default;

    /// Null where Qt Quick's modules are missing; then nothing of what follows does anything.
    [[nodiscard]] QQuickItem* item() const { return _item.get(); }

    /// False if the item doesn't have the property or doesn't take the value.
    bool set(QuickProperty property, const QVariant& value);
    bool reset(QuickProperty property);
    /// Invalid if the item doesn't have the property.
    [[nodiscard]] QVariant get(QuickProperty property) const;
    /// False if the item doesn't have the operation.
    bool call(QuickMethod method);
    /// Has `handler` called after each change of the property, in the midst of the item's own work, until this owner ends. False
    /// if the item doesn't tell of it.
    bool observe(QuickProperty property, std::function<void()> handler);

private:
    friend class QuickComponents;

    /// Where the item's class has them; the others are invalid.
    struct Members {
        std::array<QMetaProperty, static_cast<size_t>(QuickProperty::Count)> properties;
        std::array<QMetaMethod, static_cast<size_t>(QuickMethod::Count)> methods;
    };

    struct Deleter {
        void operator()(QQuickItem* item) const;
    };

    std::unique_ptr<QQuickItem, Deleter> _item;
    std::shared_ptr<const Members> _members;
};

/// Makes items out of QML's components. The only place that knows QML's texts and names. Main thread only; made on first use, goes with
/// the application object. The first item takes some 20 milliseconds, others some hundredths of one.
class QuickComponents final {
public:
    static QuickComponents& shared();
    Q_DISABLE_COPY_MOVE(QuickComponents)

    /// An item in `parent`. One without an item where a module is missing at run time; the first one logs it.
    [[nodiscard]] QuickItem create(QuickType type, QQuickItem& parent);

    /// What assistive tools are told of an item; nothing where a module is missing.
    void setAccessibleRole(QQuickItem& item, QAccessible::Role role);
    void setAccessibleName(QQuickItem& item, const QString& name);
    [[nodiscard]] QString accessibleName(QQuickItem& item);
    /// For what only adorns: assistive tools pass it over.
    void setAccessibleIgnored(QQuickItem& item);
    /// What the return key of a virtual keyboard says while the item has the focus.
    void setEnterKeyType(QQuickItem& item, Qt::EnterKeyType type);
    /// Has `slot`, the signature of a slot of the item's, called when an assistive tool presses the item. Once for an item.
    void connectAccessiblePress(QQuickItem& item, const char* slot);

private:
    struct Kind {
        std::unique_ptr<QQmlComponent> component;
        /// Null before the first item.
        std::shared_ptr<const QuickItem::Members> members;
        bool isMissing = false;
    };

    QuickComponents();
    ~QuickComponents();

    Kind& kind(QuickType type);
    static std::shared_ptr<const QuickItem::Members> resolve(QuickType type, const QMetaObject& metaObject);
    /// Null where a module is missing.
    [[nodiscard]] QQmlContext* anyContext();
    bool writeAttached(QQuickItem& item, const QString& name, const QVariant& value);

    const std::unique_ptr<QQmlEngine> _engine;
    std::map<QuickType, Kind> _kinds;
    /// Its context is where attached properties are looked up.
    QuickItem _anyItem;
};

} // namespace kovalin::platform
