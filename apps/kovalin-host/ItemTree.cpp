#include "kovalin-host/ItemTree.h"

#include "picker/grid/QXSDKKovalinStickerCollectionViewCell.h"
#include "picker/icon/QXSDKKovalinIconView.h"
#include "platform/ui/Button.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/Label.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/TextField.h"

#include <QtCore/QJsonArray>
#include <QtGui/QGuiApplication>
#include <QtQuick/QQuickWindow>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

using namespace kovalin::platform;

namespace kovalin::host {

namespace {

constexpr double leastVisibleAlpha = 0.01;
constexpr double leastMove = 0.01; // points, and parts of 1 of an opacity

/// "Label" of "kovalin::platform::Label", "Text" of "QQuickText", "TopBar" of "TopBar_QMLTYPE_3".
QString classOf(const QQuickItem& item)
{
    QString name = QString::fromLatin1(item.metaObject()->className());
    name = name.section(QStringLiteral("_QML"), 0, 0).section(QStringLiteral("::"), -1);
    const QString quick = QStringLiteral("QQuick");
    return name.startsWith(quick) && name.size() > quick.size() ? name.sliced(quick.size()) : name;
}

std::optional<QString> ownText(const QQuickItem& item)
{
    if (const auto* const label = qobject_cast<const Label*>(&item)) {
        return label->text();
    }
    if (const auto* const field = qobject_cast<const TextField*>(&item)) {
        return field->text();
    }
    if (const auto* const button = qobject_cast<const Button*>(&item)) {
        return button->title().isEmpty() ? std::nullopt : std::optional(button->title());
    }
    const QVariant text = qobject_cast<const View*>(&item) ? QVariant() : item.property("text");
    return text.isValid() ? std::optional(text.toString()) : std::nullopt;
}

/// Its children; those of what a view is made of in the place of that.
QList<QQuickItem*> childrenOf(const QQuickItem& item)
{
    const bool isPartOfView = qobject_cast<const View*>(&item) != nullptr;
    QList<QQuickItem*> children;
    const std::function<void(const QQuickItem&)> collect = [&](const QQuickItem& parent) {
        for (QQuickItem* const child : parent.childItems()) {
            if (isPartOfView && !qobject_cast<View*>(child)) {
                collect(*child);
            } else {
                children.append(child);
            }
        }
    };
    collect(item);
    return children;
}

/// All items of the tree, but for other roots and what lies in them.
void walk(QQuickItem& root, const ItemRoots& roots, const std::function<void(QQuickItem&)>& visit)
{
    visit(root);
    for (QQuickItem* const child : childrenOf(root)) {
        if (!roots.contains(child)) {
            walk(*child, roots, visit);
        }
    }
}

QString wholeText(QQuickItem& item)
{
    if (const auto text = ownText(item)) {
        return *text;
    }
    QStringList texts;
    walk(item, {}, [&texts](QQuickItem& part) {
        if (const auto text = ownText(part); text && !text->isEmpty()) {
            texts.append(*text);
        }
    });
    return texts.join(u' ');
}

bool isMeant(QQuickItem& item, const ItemTarget& target)
{
    return (item.objectName() == target.id || classOf(item) == target.id) &&
           (!target.text || wholeText(item) == *target.text);
}

/// From top to bottom, and in a line as one reads.
std::pair<double, double> readingPlace(const QQuickItem& item)
{
    const QRectF area = visibleArea(item);
    const bool isMirrored = QGuiApplication::layoutDirection() == Qt::RightToLeft;
    return {std::round(area.top()), std::round(isMirrored ? -area.right() : area.left())};
}

QJsonArray jsonOf(const QRectF& frame)
{
    return {frame.x(), frame.y(), frame.width(), frame.height()};
}

bool differ(double one, double other)
{
    return std::abs(one - other) > leastMove;
}

bool isMoving(const View& view)
{
    const QRectF frame = view.frame();
    return differ(view.x(), frame.x()) || differ(view.y(), frame.y()) || differ(view.width(), frame.width()) ||
           differ(view.height(), frame.height()) || differ(view.opacity(), view.alpha());
}

bool isLoading(const View& view)
{
    if (const auto* const tile = qobject_cast<const QXSDKKovalinStickerCollectionViewCell*>(&view)) {
        return tile->isLoading();
    }
    const auto* const picture = qobject_cast<const ImageView*>(&view);
    return picture && !picture->image().isNull() && !picture->isImageReady() && !picture->bounds().isEmpty();
}

} // namespace

ItemTarget ItemTarget::fromText(const QString& text)
{
    ItemTarget target;
    const qsizetype equals = text.indexOf(u'=');
    const QString name = text.left(equals);
    if (equals >= 0) {
        target.text = text.sliced(equals + 1);
    }
    bool isNumber = false;
    const qsizetype colon = name.lastIndexOf(u':');
    const int index = colon < 0 ? 0 : name.sliced(colon + 1).toInt(&isNumber);
    target.id = isNumber ? name.left(colon) : name;
    target.index = isNumber ? index : 0;
    return target;
}

QRectF visibleArea(const QQuickItem& item)
{
    if (!item.window() || !item.isVisible()) {
        return {};
    }
    QRectF area =
        item.mapRectToScene(QRectF(QPointF(), item.size())) & QRectF(QPointF(), QSizeF(item.window()->size()));
    double alpha = 1;
    for (const QQuickItem* ancestor = &item; ancestor; ancestor = ancestor->parentItem()) {
        alpha *= ancestor->opacity();
        if (ancestor->clip()) {
            area &= ancestor->mapRectToScene(QRectF(QPointF(), ancestor->size()));
        }
    }
    return alpha < leastVisibleAlpha ? QRectF() : area;
}

QQuickItem* findItem(const ItemRoots& roots, const ItemTarget& target)
{
    std::vector<QQuickItem*> found;
    for (QQuickItem* const root : roots) {
        std::vector<std::pair<std::pair<double, double>, QQuickItem*>> inRoot;
        walk(*root, roots, [&](QQuickItem& item) {
            if (isMeant(item, target) && !visibleArea(item).isEmpty()) {
                inRoot.emplace_back(readingPlace(item), &item);
            }
        });
        std::ranges::stable_sort(inRoot, {}, &std::pair<std::pair<double, double>, QQuickItem*>::first);
        for (const auto& [place, item] : inRoot) {
            found.push_back(item);
        }
    }
    const auto index = static_cast<std::size_t>(target.index);
    return index < found.size() ? found[index] : nullptr;
}

QJsonObject treeOf(const QQuickItem& root, const ItemRoots& roots)
{
    const auto* const view = qobject_cast<const View*>(&root);
    QJsonObject json{
        {QStringLiteral("class"), classOf(root)},
        {QStringLiteral("id"), root.objectName()},
        {QStringLiteral("frame"), jsonOf(view ? view->frame() : QRectF(root.position(), root.size()))},
        {QStringLiteral("visible"), root.isVisible()},
        {QStringLiteral("alpha"), view ? view->alpha() : root.opacity()},
    };
    if (const auto text = ownText(root)) {
        json.insert(QStringLiteral("text"), *text);
    }
    if (const auto* const tile = qobject_cast<const QXSDKKovalinStickerCollectionViewCell*>(&root)) {
        json.insert(QStringLiteral("url"), tile->imageURL().value_or(QUrl()).toString());
        json.insert(QStringLiteral("loaded"), tile->isLoaded());
    }
    if (const auto* const scrolled = qobject_cast<const ScrollView*>(&root)) {
        const QPointF offset = scrolled->contentOffset();
        json.insert(QStringLiteral("offset"), QJsonArray{offset.x(), offset.y()});
    }
    if (const auto* const icon = qobject_cast<const QXSDKKovalinIconView*>(&root)) {
        json.insert(QStringLiteral("url"),
                    icon->sticker() ? QJsonValue(icon->sticker()->url().value_or(QString())) : QJsonValue());
    }
    QJsonArray children;
    for (QQuickItem* const child : childrenOf(root)) {
        if (!roots.contains(child)) {
            children.append(treeOf(*child, roots));
        }
    }
    json.insert(QStringLiteral("children"), children);
    return json;
}

bool isAtRest(const ItemRoots& roots)
{
    bool isAtRest = true;
    for (QQuickItem* const root : roots) {
        walk(*root, roots, [&isAtRest](QQuickItem& item) {
            const auto* const view = qobject_cast<const View*>(&item);
            if (view && !visibleArea(item).isEmpty() && (isMoving(*view) || isLoading(*view))) {
                isAtRest = false;
            }
        });
    }
    return isAtRest;
}

} // namespace kovalin::host
