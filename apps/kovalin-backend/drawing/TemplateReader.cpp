#include "kovalin-backend/drawing/TemplateReader.h"

#include "kovalin-backend/drawing/Named.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

namespace kovalin::drawing {

namespace {

QString quoted(const QString& text)
{
    return QStringLiteral("\"%1\"").arg(text);
}

void checkKeys(const QJsonObject& object, const QStringList& known)
{
    const QStringList keys = object.keys();
    for (const QString& key : keys) {
        if (!known.contains(key)) {
            throw BadTemplate(QStringLiteral("%1 is no key of a template").arg(quoted(key)));
        }
    }
}

/// Empty when the key is absent.
QString textOf(const QJsonObject& object, const QString& key)
{
    const QJsonValue value = object.value(key);
    if (!value.isUndefined() && !value.isString()) {
        throw BadTemplate(QStringLiteral("%1 is no text").arg(quoted(key)));
    }
    return value.toString();
}

/// What the text under the key names in a table; null when the key is absent.
template <typename Entry>
const Entry* named(const QJsonObject& object, const QString& key, const Entry* (*find)(std::string_view))
{
    const QString name = textOf(object, key);
    if (name.isEmpty()) {
        return nullptr;
    }
    const Entry* const found = find(name.toStdString());
    if (!found) {
        throw BadTemplate(QStringLiteral("there is no %1 %2").arg(key, quoted(name)));
    }
    return found;
}

const Palette* paletteNamed(std::string_view name)
{
    return findNamed(palettes, name);
}

/// `usualGesture` is the pose's; it is empty for a figure alone.
Role readRole(const QJsonObject& object, std::string_view usualGesture)
{
    Role role;
    const Expression* const expression = named(object, QStringLiteral("expression"), expressionNamed);
    if (!expression) {
        throw BadTemplate(QStringLiteral("\"expression\" is missing"));
    }
    role.expression = *expression;
    role.prop = named(object, QStringLiteral("prop"), propNamed);
    role.gesture = named(object, QStringLiteral("gesture"), gestureNamed);
    if (!role.gesture && !usualGesture.empty()) {
        role.gesture = gestureNamed(usualGesture);
    } else if (!role.gesture && role.prop && !role.prop->gesture.empty()) {
        role.gesture = gestureNamed(role.prop->gesture);
    }
    const Stance* const stance = named(object, QStringLiteral("stance"), stanceNamed);
    role.legs = stance ? stance->legs : Legs::Hidden;
    return role;
}

std::vector<const Motif*> readMotifs(const QJsonValue& names)
{
    if (!names.isUndefined() && !names.isArray()) {
        throw BadTemplate(QStringLiteral("\"motifs\" is no list"));
    }
    std::vector<const Motif*> motifs;
    const QJsonArray list = names.toArray();
    for (const QJsonValue& name : list) {
        const Motif* const motif = motifNamed(name.toString().toStdString());
        if (!motif) {
            throw BadTemplate(QStringLiteral("there is no motif %1").arg(quoted(name.toString())));
        }
        motifs.push_back(motif);
    }
    return motifs;
}

std::optional<PairPart> readPair(const QJsonObject& object, const PairPose* pose)
{
    const QJsonValue friendRole = object.value(u"friend");
    if (!pose) {
        if (!friendRole.isUndefined() || object.contains(u"shared")) {
            throw BadTemplate(QStringLiteral("\"friend\" and \"shared\" take a \"pose\""));
        }
        return std::nullopt;
    }
    if (!friendRole.isObject()) {
        throw BadTemplate(QStringLiteral("\"pose\" takes a \"friend\""));
    }
    checkKeys(friendRole.toObject(), {QStringLiteral("expression"), QStringLiteral("gesture"), QStringLiteral("prop"),
                                      QStringLiteral("stance")});
    return PairPart{pose, readRole(friendRole.toObject(), pose->right.gesture),
                    named(object, QStringLiteral("shared"), propNamed)};
}

} // namespace

StickerTemplate readTemplate(const QJsonValue& entry)
{
    if (!entry.isObject()) {
        throw BadTemplate(QStringLiteral("is no object"));
    }
    const QJsonObject object = entry.toObject();
    checkKeys(object,
              {QStringLiteral("id"), QStringLiteral("expression"), QStringLiteral("gesture"), QStringLiteral("prop"),
               QStringLiteral("stance"), QStringLiteral("motifs"), QStringLiteral("palette"), QStringLiteral("caption"),
               QStringLiteral("lettering"), QStringLiteral("captionOnTop"), QStringLiteral("pose"),
               QStringLiteral("friend"), QStringLiteral("shared")});
    StickerTemplate result;
    result.id = textOf(object, QStringLiteral("id"));
    if (result.id.isEmpty()) {
        throw BadTemplate(QStringLiteral("\"id\" is missing"));
    }
    const PairPose* const pose = named(object, QStringLiteral("pose"), pairPoseNamed);
    result.pair = readPair(object, pose);
    result.role = readRole(object, pose ? pose->left.gesture : std::string_view());
    result.motifs = readMotifs(object.value(u"motifs"));
    const Palette* const palette = named(object, QStringLiteral("palette"), paletteNamed);
    result.palette = palette ? palette : &palettes.front();
    result.caption = textOf(object, QStringLiteral("caption"));
    const LetteringStyle* const style = named(object, QStringLiteral("lettering"), letteringNamed);
    result.lettering = style ? style->lettering : Lettering::Straight;
    result.isCaptionOnTop = object.value(u"captionOnTop").toBool();
    return result;
}

} // namespace kovalin::drawing
