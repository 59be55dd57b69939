#include "support/PackGenerator.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QStringView>
#include <QtGui/QColor>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <numeric>
#include <random>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

using namespace std::string_view_literals;

namespace kovalin::test {

namespace {

/// The engine's numbers are the same everywhere, those of the standard distributions and of std::shuffle are not.
class Random final {
public:
    explicit Random(quint64 seed)
        : _engine(seed)
    {
    }

    /// From 0 to limit - 1; the limit must be above 0.
    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(_engine() % limit); }
    bool percent(std::size_t chance) { return below(100) < chance; }

    template <typename Row>
    auto& pick(Row& row)
    {
        return row[static_cast<decltype(row.size())>(below(static_cast<std::size_t>(row.size())))];
    }

    template <typename Row>
    void shuffle(Row& row)
    {
        for (auto left = row.size(); left > 1; --left) {
            const auto other = static_cast<decltype(left)>(below(static_cast<std::size_t>(left)));
            std::swap(row[left - 1], row[other]);
        }
    }

private:
    std::mt19937_64 _engine;
};

/// Chooses places of which the first are the most frequent: the n-th has a weight of 1 / (n + 10).
class SkewedChoice final {
public:
    explicit SkewedChoice(std::size_t count)
    {
        constexpr quint64 scale = 1'000'000'000;
        quint64 sum = 0;
        for (std::size_t place = 0; place < count; ++place) {
            sum += scale / (place + 10);
            _sums.push_back(sum);
        }
    }

    std::size_t operator()(Random& random) const
    {
        const auto target = random.below(static_cast<std::size_t>(_sums.back()));
        return static_cast<std::size_t>(std::upper_bound(_sums.cbegin(), _sums.cend(), target) - _sums.cbegin());
    }

private:
    std::vector<quint64> _sums;
};

QString text(std::u16string_view view)
{
    return QStringView(view.data(), static_cast<qsizetype>(view.size())).toString();
}

/// A text of its own, as a document's reader makes one for each string that it meets.
QString unshared(const QString& shared)
{
    return QString(shared.constData(), shared.size());
}

// ---- Content for measuring

QString inventedWord(Random& random, std::size_t syllables)
{
    constexpr std::array onsets{u"b"sv, u"c"sv,  u"d"sv,  u"f"sv,  u"g"sv, u"h"sv,  u"l"sv,  u"m"sv,  u"n"sv,  u"p"sv,
                                u"r"sv, u"s"sv,  u"s"sv,  u"t"sv,  u"t"sv, u"w"sv,  u"st"sv, u"ch"sv, u"br"sv, u"pl"sv,
                                u"j"sv, u"gr"sv, u"sh"sv, u"tr"sv, u"k"sv, u"th"sv, u"v"sv,  u"y"sv,  u"qu"sv, u""sv};
    constexpr std::array vowels{u"a"sv, u"a"sv, u"e"sv, u"e"sv, u"i"sv, u"o"sv, u"u"sv, u"ea"sv, u"oo"sv, u"y"sv};
    constexpr std::array codas{u""sv, u""sv, u""sv, u"n"sv, u"r"sv, u"t"sv, u"s"sv, u"l"sv, u"ck"sv, u"ng"sv};
    QString word;
    for (std::size_t syllable = 0; syllable < syllables; ++syllable) {
        word += text(random.pick(onsets));
        word += text(random.pick(vowels));
        word += text(random.pick(codas));
    }
    return word;
}

/// Different words, the short ones mostly in front.
QStringList inventedVocabulary(Random& random, qsizetype count)
{
    QStringList words;
    QSet<QString> known;
    while (words.size() < count) {
        const std::size_t leastSyllables = words.size() < count / 20 ? 1 : 2;
        const QString word = inventedWord(random, leastSyllables + random.below(2));
        if (word.size() > 2 && !known.contains(word)) {
            known.insert(word);
            words.append(word);
        }
    }
    return words;
}

/// Different tags, to be used the more the further in front: six in ten of one word, three of two, one of three.
QStringList inventedTags(Random& random, qsizetype count)
{
    const QStringList words = inventedVocabulary(random, count);
    const SkewedChoice anyWord(static_cast<std::size_t>(words.size()));
    QStringList tags;
    QSet<QString> known;
    qsizetype nextWord = 0;
    while (tags.size() < count) {
        const auto kind = random.below(10);
        const int wordCount = kind < 6 ? 1 : (kind < 9 ? 2 : 3);
        QString tag = wordCount == 1 ? words[nextWord++] : words[static_cast<qsizetype>(anyWord(random))];
        for (int word = 1; word < wordCount; ++word) {
            tag += u' ' + words[static_cast<qsizetype>(anyWord(random))];
        }
        if (!known.contains(tag)) {
            known.insert(tag);
            tags.append(tag);
        }
    }
    return tags;
}

QString packIdAt(int place)
{
    constexpr std::array ids{u"popular"sv, u"greeting"sv, u"affection"sv, u"positive"sv, u"negative"sv, u"occasions"sv};
    const auto index = static_cast<std::size_t>(place);
    return index < ids.size() ? text(ids.at(index)) : QStringLiteral("pack%1").arg(place);
}

std::shared_ptr<KovalinSticker> inventedSticker(Random& random, const QString& packId, const QString& templateName)
{
    auto sticker = std::make_shared<KovalinSticker>();
    const QString comicId = QString::number(10'000'000 + random.below(990'000'000));
    sticker->setComicId(comicId);
    sticker->setUrl(u"https://stickers.example/render/" + comicId + u"-%s.png?scale=2&set=" + packId);
    sticker->setTemplateId(u't' + QString(templateName).replace(u' ', u'_'));
    sticker->setFriendvalin(random.percent(30));
    return sticker;
}

// ---- Odd content

// clang-format off
constexpr std::array oddTags{
    // Words and their neighbours
    u"happy"sv, u"happy birthday"sv, u"birthday happy"sv, u"birthday"sv, u"birthday party"sv, u"happ"sv, u"ha"sv,
    u"h"sv, u"happy happy joy"sv, u"party party"sv, u"joy to the world joy"sv, u"a b c d e f g h i j"sv,
    // Decorations
    u""sv, u"*"sv, u"**"sv, u"***"sv, u"love*"sv, u"love**"sv, u"lo*ve"sv, u"*love"sv, u"love *"sv, u"#love"sv,
    u"##"sv, u" #love"sv, u"lo#ve"sv, u"mood:love"sv, u":"sv, u"love:"sv, u"#*"sv, u":*"sv,
    // Capitals and word boundaries
    u"LOVE"sv, u"Love"sv, u"love"sv, u"lOvE yOu"sv, u"love you"sv, u"Love, You!"sv, u"love-you"sv, u"love_you"sv,
    // Accents and other scripts
    u"caf\u00E9"sv, u"cafe\u0301"sv, u"CAF\u00C9 cr\u00E8me"sv, u"na\u00EFve"sv, u"\u00E9"sv, u"\u00FCber"sv,
    u"\u03B1\u03B3\u03AC\u03C0\u03B7"sv, u"\u0391\u0393\u0391\u03A0\u0397"sv, u"\u03C3\u03BF\u03C6\u03CC\u03C2"sv,
    u"\u043B\u044E\u0431\u043E\u0432\u044C"sv, u"\u041B\u042E\u0411\u041E\u0412\u042C \u043C\u043E\u044F"sv,
    // Letters that grow, shrink or leave their script when lower-cased
    u"\u0130stanbul"sv, u"istanbul"sv, u"\u0131stanbul"sv, u"I"sv, u"stra\u00DFe"sv, u"STRA\u1E9EE"sv,
    u"\u212Aelvin"sv, u"\u01C5ep"sv, u"\U00010400\U00010401"sv, u"\U00010428\U00010429"sv, u"\uFB01sh"sv,
    u"\u1F88"sv,
    // Scripts without case
    u"\u751F\u65E5\u5FEB\u4E50"sv, u"\u751F\u65E5"sv, u"\u8AA4\u3001\u89E3\u3002"sv, u"\u3042\u3000\u3044"sv,
    u"\uC0DD\uC77C \uCD95\uD558"sv, u"\u0645\u0631\u062D\u0628\u0627\u060C"sv,
    u"\u0928\u092E\u0938\u094D\u0924\u0947"sv,
    // Symbols and punctuation beyond the first plane
    u"\U0001F602"sv, u"\U0001F602\U0001F602 lol"sv, u"\u2764\uFE0F"sv, u"\U0001F468\u200D\U0001F469"sv,
    u"\U0001F1E9\U0001F1EA"sv, u"a\U00010100b"sv, u"\U00010100"sv, u"\U00010100\U00010101 x"sv, u"x\U0001F602y"sv,
    // Apostrophes
    u"don't"sv, u"dont"sv, u"Don\u2019t"sv, u"don t"sv, u"'"sv, u"''love''"sv, u"'tis"sv, u"rock 'n' roll"sv,
    u"\u2018q\u2019"sv,
    // Spaces, line breaks and controls
    u"a\u00A0b"sv, u"a\tb"sv, u"a\nb"sv, u"a\r\nb"sv, u"a\u2028b"sv, u"a\u2003b"sv, u"a\u200Bb"sv, u"\u00ADa"sv,
    u"\uFEFFlove"sv, u"a\vb"sv, u"a\0b"sv, u"\u0085"sv, u" love"sv, u"love "sv, u"  love  you  "sv, u"\tlove"sv,
    // Punctuation, symbols, half characters
    u"!!!"sv, u"?!"sv, u"..."sv, u" "sv, u" - "sv, u"\u00BF\u00A1"sv, u"\u2014"sv, u"<3"sv, u"$$$"sv, u"c++"sv,
    u"100%"sv, u"1+1=2"sv, u"(love)"sv, u"@you"sv, u"50 \u20AC"sv, u"\xD83D"sv, u"\xDE02"sv, u"\xDE02\xD83D"sv,
    u"love\xD83D"sv,
};
// clang-format on

constexpr std::array oddWords{u"happy"sv,  u"happily"sv, u"birthday"sv, u"birth"sv,     u"party"sv,        u"love"sv,
                              u"lovely"sv, u"you"sv,     u"it's"sv,     u"caf\u00E9"sv, u"\u041B\u044E"sv, u"a"sv};

constexpr std::array oddSeparators{u" "sv,      u" "sv, u" "sv,      u"-"sv,          u", "sv,    u"_"sv,
                                   u"\u00A0"sv, u"'"sv, u"\u2019"sv, u"\U00010100"sv, u"  /  "sv, u"\n"sv};

QString oddPhrase(Random& random)
{
    QString phrase = text(random.pick(oddWords));
    for (auto more = random.below(4); more > 0; --more) {
        phrase += text(random.pick(oddSeparators));
        phrase += text(random.pick(oddWords));
    }
    return phrase;
}

/// What the tags of one list of packs are taken from: few enough for them to meet.
QStringList oddTagPool(Random& random)
{
    QStringList pool;
    for (auto count = 10 + random.below(50); count > 0; --count) {
        pool.append(random.percent(70) ? text(random.pick(oddTags)) : oddPhrase(random));
    }
    return pool;
}

QStringList oddTagList(Random& random, const QStringList& pool)
{
    QStringList tags;
    for (auto count = random.below(8); count > 0; --count) {
        QString tag = random.pick(pool);
        if (random.percent(10)) {
            tag = tag.toUpper();
        }
        if (random.percent(25)) {
            tag += u'*';
        }
        if (random.percent(3)) {
            tag.prepend(random.percent(50) ? u'#' : u':');
        }
        tags.append(unshared(tag));
        if (random.percent(20)) {
            // Once more, with a star or without, before or behind.
            tags.insert(static_cast<qsizetype>(random.below(static_cast<std::size_t>(tags.size()))),
                        tag.endsWith(u'*') ? tag.chopped(1) : tag + u'*');
        }
    }
    return tags;
}

/// Of few identities, so that stickers in different packs are often equal.
std::shared_ptr<KovalinSticker> oddSticker(Random& random, std::size_t identityCount, const QStringList& tagPool)
{
    constexpr std::array prefixes{u"c"sv, u"c"sv, u"c"sv, u"\u0446"sv, u"\u00E9"sv};
    auto sticker = std::make_shared<KovalinSticker>();
    const auto identity = random.below(identityCount);
    if (!random.percent(6)) {
        const QString prefix = text(prefixes.at(identity % prefixes.size()));
        sticker->setComicId(random.percent(3) ? QStringLiteral("") : prefix + QString::number(identity));
    }
    if (!random.percent(6)) {
        sticker->setUrl(random.percent(3) ? QStringLiteral("")
                                          : QStringLiteral("https://stickers.example/%1/%s").arg(random.below(2)));
    }
    if (random.percent(80)) {
        sticker->setTemplateId(QStringLiteral("t%1").arg(random.below(5)));
    }
    if (!random.percent(6)) {
        sticker->setTags(oddTagList(random, tagPool));
    }
    sticker->setFriendvalin(random.percent(40));
    return sticker;
}

std::optional<QString> oddTitle(Random& random, const QStringList& tagPool)
{
    const auto kind = random.below(10);
    if (kind < 1) {
        return std::nullopt;
    }
    if (kind < 5) {
        const QString tag = random.pick(tagPool);
        return tag.endsWith(u'*') ? tag.chopped(1) : tag;
    }
    return kind < 6 ? QStringLiteral("") : QStringLiteral("Title %1").arg(random.below(4));
}

// ---- Queries

/// The tags without their star, the most frequent first.
QStringList tagsByFallingUse(const KovalinPackList& packs)
{
    QHash<QString, int> uses;
    QStringList tags;
    for (const KovalinPackPtr& pack : packs) {
        for (const KovalinStickerPtr& sticker : pack->stickers()) {
            for (const QString& raw : sticker->tags().value_or(QStringList())) {
                const QString tag = raw.endsWith(u'*') ? raw.chopped(1) : raw;
                if (uses[tag]++ == 0) {
                    tags.append(tag);
                }
            }
        }
    }
    std::stable_sort(tags.begin(), tags.end(),
                     [&uses](const QString& a, const QString& b) { return uses.value(a) > uses.value(b); });
    return tags;
}

QString anyBeginning(Random& random, const QString& whole)
{
    return whole.left(static_cast<qsizetype>(random.below(static_cast<std::size_t>(whole.size()) + 1)));
}

QStringList beginningsOfWords(Random& random, const QString& tag)
{
    QStringList words = tag.split(u' ');
    for (QString& word : words) {
        if (random.percent(50)) {
            word = anyBeginning(random, word);
        }
    }
    return words;
}

QString anyQuery(Random& random, const QStringList& tags)
{
    constexpr std::array pointless{u""sv,   u" "sv,  u"!?"sv,         u"..."sv, u"'"sv,  u"\u2019"sv,
                                   u"\t"sv, u"\n"sv, u"-"sv,          u" , "sv, u"zq"sv, u"zqx xqz"sv,
                                   u"*"sv,  u"#"sv,  u"\U00010100"sv, u":"sv};
    const QString tag = random.pick(tags);
    QStringList words = beginningsOfWords(random, tag);
    switch (random.below(12)) {
    case 0:
        return tag;
    case 1:
        return anyBeginning(random, tag).toUpper();
    case 2:
        random.shuffle(words);
        return words.join(u' ');
    case 3:
        words += beginningsOfWords(random, random.pick(tags));
        random.shuffle(words);
        return words.join(text(random.pick(oddSeparators)));
    case 4: {
        const QString repeated = random.pick(words);
        words.append(repeated);
        return words.join(u' ');
    }
    case 5: {
        const auto place = static_cast<qsizetype>(random.below(static_cast<std::size_t>(tag.size()) + 1));
        return QString(tag).insert(place, random.percent(50) ? u'\'' : u'\u2019');
    }
    case 6:
        return QString(tag).replace(u'\'', u'\u2019');
    case 7:
        return text(random.pick(pointless));
    case 8:
        return tag + text(random.pick(pointless));
    case 9:
        return QString(QChar(u'a' + static_cast<char16_t>(random.below(26))));
    case 10:
        return random.percent(50) ? text(random.pick(oddTags)) : oddPhrase(random);
    default:
        return anyBeginning(random, tag);
    }
}

QStringView firstWords(QStringView tag, int count)
{
    qsizetype end = tag.indexOf(u' ');
    for (int word = 1; word < count && end >= 0; ++word) {
        end = tag.indexOf(u' ', end + 1);
    }
    return end < 0 ? tag : tag.first(end);
}

} // namespace

KovalinPackList generatePacks(const PackShape& shape)
{
    Random random(shape.seed);
    const QStringList tags = inventedTags(random, shape.tags);
    const SkewedChoice anyTag(static_cast<std::size_t>(tags.size()));

    // Each tag gets one place of its own among all places; chance fills the rest.
    const auto perSticker = static_cast<std::size_t>(shape.tagsPerSticker);
    std::vector<qsizetype> ownTags(static_cast<std::size_t>(shape.stickers) * perSticker, -1);
    std::iota(ownTags.begin(), ownTags.begin() + tags.size(), qsizetype{0});
    random.shuffle(ownTags);

    KovalinPackList packs;
    std::size_t place = 0;
    for (int number = 0; number < shape.packs; ++number) {
        const QString packId = packIdAt(number);
        KovalinStickerList stickers;
        const auto end = perSticker * (static_cast<std::size_t>(shape.stickers) * static_cast<std::size_t>(number + 1) /
                                       static_cast<std::size_t>(shape.packs));
        while (place < end) {
            std::vector<qsizetype> chosen;
            for (std::size_t slot = 0; slot < perSticker; ++slot, ++place) {
                const qsizetype own = ownTags[place];
                const qsizetype tag = own >= 0 ? own : static_cast<qsizetype>(anyTag(random));
                if (std::find(chosen.cbegin(), chosen.cend(), tag) == chosen.cend()) {
                    chosen.push_back(tag);
                }
            }
            QStringList stickerTags;
            for (const qsizetype tag : chosen) {
                const QString& name = tags[tag];
                stickerTags.append(random.percent(20) ? name + u'*' : shape.sharesTagStrings ? name : unshared(name));
            }
            const auto sticker = inventedSticker(random, packId, tags[chosen.front()]);
            sticker->setTags(stickerTags);
            stickers.append(sticker);
        }
        auto pack = std::make_shared<KovalinPack>();
        pack->setPackId(packId);
        pack->setName(number % 2 == 0 ? tags[number % tags.size()] : QStringLiteral("Pack %1").arg(number));
        pack->setColor(QColor(QRgb(0xFF000000U | static_cast<quint32>(random.below(0x1000000)))));
        pack->setVisible(number % 7 != 0);
        pack->setStickers(stickers);
        packs.append(pack);
    }
    return packs;
}

KovalinPackList generateOddPacks(quint64 seed)
{
    Random random(seed);
    const QStringList tagPool = oddTagPool(random);
    const std::size_t stickerCount = 20 + random.below(280);
    std::vector<std::optional<QString>> packIds{QStringLiteral("Greeting"), QStringLiteral("none"), QStringLiteral(""),
                                                std::nullopt};
    for (int times = 0; times < 2; ++times) {
        for (int place = 0; place < 6; ++place) {
            packIds.emplace_back(packIdAt(place));
        }
    }
    random.shuffle(packIds);

    std::vector<KovalinStickerPtr> made;
    KovalinPackList packs;
    for (const auto& packId : packIds) {
        KovalinStickerList stickers;
        const std::size_t count = random.percent(15) ? 0 : 1 + random.below(2 * stickerCount / packIds.size());
        for (std::size_t number = 0; number < count; ++number) {
            if (made.empty() || !random.percent(10)) {
                made.push_back(oddSticker(random, stickerCount / 3 + 1, tagPool));
                stickers.append(made.back());
            } else {
                stickers.append(random.pick(made));
            }
        }
        auto pack = std::make_shared<KovalinPack>();
        pack->setPackId(packId);
        pack->setName(oddTitle(random, tagPool));
        if (random.percent(80)) {
            pack->setColor(QColor(QRgb(0xFF000000U | static_cast<quint32>(random.below(0x1000000)))));
        }
        pack->setVisible(random.percent(65));
        pack->setStickers(stickers);
        packs.append(pack);
    }
    return packs;
}

QStringList generateQueries(const KovalinPackList& packs, int count, quint64 seed)
{
    Random random(seed);
    QStringList tags = tagsByFallingUse(packs);
    if (tags.isEmpty()) {
        tags.append(QStringLiteral("happy"));
    }
    QStringList queries;
    while (queries.size() < count) {
        queries.append(anyQuery(random, tags));
    }
    return queries;
}

QStringList typedQueries(const KovalinPackList& packs, int textCount, quint64 seed)
{
    Random random(seed);
    const QStringList tags = tagsByFallingUse(packs);
    if (tags.isEmpty()) {
        return {};
    }
    const auto most = std::span(tags).first(std::min<std::size_t>(100, static_cast<std::size_t>(tags.size())));
    const auto least = std::span(tags).last(static_cast<std::size_t>(tags.size() + 1) / 2);
    QStringList queries;
    for (int number = 0; number < textCount; ++number) {
        const QString& tag = number % 3 == 0   ? random.pick(most)
                             : number % 3 == 1 ? random.pick(tags)
                                               : random.pick(least);
        QString typed = firstWords(tag, 2).toString();
        if (number % 8 == 3) {
            typed = firstWords(tag, 1) + u' ' + firstWords(random.pick(most), 1);
        } else if (number % 8 == 7) {
            typed = anyBeginning(random, typed) + u"zqx";
        }
        for (qsizetype length = 2; length <= typed.size(); ++length) {
            queries.append(typed.first(length));
        }
    }
    return queries;
}

} // namespace kovalin::test
