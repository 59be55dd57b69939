#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTranslator>

#include <memory>

/// The texts of the picker in one language. Immutable; any thread.
///
/// The library asks its translator itself and doesn't install it, so that a host's own texts are neither hidden by ours nor ours
/// by a host's.
class KovalinTexts final {
public:
    /// The texts of the first of `languages` that there are any in, else the English ones. Never null.
    [[nodiscard]] static std::shared_ptr<const KovalinTexts> inLanguages(const QStringList& languages);

    /// What texts are taken from. At first, and from the first use on, they are in the languages of the user interface of the system.
    [[nodiscard]] static std::shared_ptr<const KovalinTexts> current();

    /// Replaces what texts are taken from, for all look-ups that begin afterwards. `texts` must not be null.
    static void setCurrent(std::shared_ptr<const KovalinTexts> texts);

    /// The languages that there are texts in, as "en" and "zh-Hans", sorted.
    [[nodiscard]] static QStringList languages();

    /// To be made through `inLanguages`.
    explicit KovalinTexts(const QString& language);
    Q_DISABLE_COPY_MOVE(KovalinTexts)

    /// The language that the texts are in, one of `languages`.
    [[nodiscard]] const QString& language() const { return _language; }

    /// The text of the key; absent keys come back as they are, as `qtTrId` does it.
    [[nodiscard]] QString textWithKey(const QString& key) const;

private:
    const QString _language;
    const QByteArray _bytes; // what the translator reads from
    QTranslator _translator;
};
