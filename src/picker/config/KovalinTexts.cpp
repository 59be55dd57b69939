#include "picker/config/KovalinTexts.h"

#include "picker/config/KovalinResources.h"
#include "platform/foundation/SharedSlot.h"

#include <QtCore/QLocale>

#include <algorithm>
#include <utility>

namespace {

using CurrentTexts = kovalin::platform::SharedSlot<const KovalinTexts>;

const QString& folder()
{
    static const auto& name = *new QString(QStringLiteral("translations"));
    return name;
}

const QString& suffix()
{
    static const auto& text = *new QString(QStringLiteral(".qm"));
    return text;
}

QString fallbackLanguage()
{
    return QStringLiteral("en");
}

/// Whether who reads `wanted` reads `offered`: the same language in the same script, in whatever country. A language without a
/// script is in its usual one, so that "zh-TW" is Chinese in traditional characters.
bool serves(const QLocale& offered, const QLocale& wanted)
{
    return offered.language() == wanted.language() && offered.script() == wanted.script();
}

CurrentTexts& currentTexts()
{
    // Never destroyed: threads may still ask while the process ends.
    static auto& texts = *new CurrentTexts(KovalinTexts::inLanguages(QLocale::system().uiLanguages()));
    return texts;
}

} // namespace

std::shared_ptr<const KovalinTexts> KovalinTexts::inLanguages(const QStringList& languages)
{
    const QStringList offered = KovalinTexts::languages();
    for (const QString& language : languages) {
        const QLocale wanted(language);
        const auto found =
            std::ranges::find_if(offered, [&](const QString& name) { return serves(QLocale(name), wanted); });
        if (found != offered.end()) {
            return std::make_shared<const KovalinTexts>(*found);
        }
    }
    return std::make_shared<const KovalinTexts>(fallbackLanguage());
}

std::shared_ptr<const KovalinTexts> KovalinTexts::current()
{
    return currentTexts().load();
}

void KovalinTexts::setCurrent(std::shared_ptr<const KovalinTexts> texts)
{
    currentTexts().store(std::move(texts));
}

QStringList KovalinTexts::languages()
{
    QStringList languages = kovalinResourceNames(folder());
    for (QString& name : languages) {
        name.chop(suffix().size());
    }
    languages.sort();
    return languages;
}

KovalinTexts::KovalinTexts(const QString& language)
    : _language(language)
    , _bytes(kovalinResource(folder(), language + suffix()))
{
    const bool isLoaded =
        _translator.load(reinterpret_cast<const uchar*>(_bytes.constData()), static_cast<int>(_bytes.size()));
    Q_ASSERT_X(isLoaded, "KovalinTexts", "what is built into the library can be read");
    Q_UNUSED(isLoaded)
}

QString KovalinTexts::textWithKey(const QString& key) const
{
    // The translator takes a C string, which would end at a NUL and find the key before it.
    if (key.contains(QChar(u'\0'))) {
        return key;
    }
    const QString text = _translator.translate(nullptr, key.toUtf8().constData());
    return text.isNull() ? key : text;
}
