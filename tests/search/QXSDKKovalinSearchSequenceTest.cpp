#include "search/QXSDKKovalinSearchSequence.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto typed = QXSDKKovalinCategoryTypedText;
constexpr auto suggestedTag = QXSDKKovalinCategorySuggestedTag;
constexpr auto defaultTag = QXSDKKovalinCategoryDefaultTag;
constexpr auto hostTerm = QXSDKKovalinCategoryHostTerm;
constexpr auto extending = QXSDKKovalinSearchSequenceStateExtending;
constexpr auto shrinking = QXSDKKovalinSearchSequenceStateShrinking;
constexpr auto diverged = QXSDKKovalinSearchSequenceStateDiverged;

/// Each term as "text/category".
QStringList described(const QXSDKKovalinSearchTermList& terms)
{
    QStringList list;
    for (const auto& term : terms) {
        list.append(u"%1/%2"_s.arg(term->value()).arg(int{term->category()}));
    }
    return list;
}

void type(QXSDKKovalinSearchSequence& sequence, const QStringList& texts)
{
    for (const QString& text : texts) {
        sequence.push(text, typed);
    }
}

/// A sequence in the given state whose last text is "hey". In state 0 and 2 the last term is that text's own.
QXSDKKovalinSearchSequence sequenceIn(QXSDKKovalinSearchSequenceState state)
{
    QXSDKKovalinSearchSequence sequence;
    switch (state) {
    case extending:
        type(sequence, {u"hey"_s});
        break;
    case shrinking:
        type(sequence, {u"heyo"_s, u"hey"_s});
        break;
    case diverged:
        type(sequence, {u"other"_s, u"hey"_s});
        break;
    }
    EXPECT_EQ(sequence.state(), state);
    EXPECT_EQ(sequence.lastTextEntry(), u"hey"_s);
    return sequence;
}

} // namespace

TEST(QXSDKKovalinSearchTerm, IsEqualByTextAndCategory)
{
    const QXSDKKovalinSearchTerm term(u"hey"_s, typed);
    EXPECT_EQ(term.value(), u"hey"_s);
    EXPECT_EQ(term.category(), typed);
    EXPECT_TRUE(term.isEqual(term));
    EXPECT_TRUE(term.isEqual(QXSDKKovalinSearchTerm(u"hey"_s, typed)));
    EXPECT_FALSE(term.isEqual(QXSDKKovalinSearchTerm(u"Hey"_s, typed)));
    EXPECT_FALSE(term.isEqual(QXSDKKovalinSearchTerm(u"hey"_s, hostTerm)));
}

TEST(QXSDKKovalinSearchSequence, StartsEmptyAndDiverged)
{
    QXSDKKovalinSearchSequence sequence;
    EXPECT_EQ(sequence.state(), diverged);
    EXPECT_EQ(sequence.lastTextEntry(), QString());
    EXPECT_TRUE(sequence.sequence().isEmpty());
    EXPECT_TRUE(sequence.popAll().isEmpty());
}

TEST(QXSDKKovalinSearchSequence, TellsTheNextStateByTheLastText)
{
    struct Row {
        QString last;
        QString text;
        QXSDKKovalinSearchSequenceState next;
    };
    for (const Row& row : {
             Row{u""_s, u"x"_s, extending},     // nothing before
             Row{u""_s, u""_s, extending},      //
             Row{u"hey"_s, u"he"_s, shrinking}, // a shorter beginning
             Row{u"hey"_s, u""_s, diverged},    // shorter, but empty
             Row{u"hey"_s, u"ey"_s, diverged},  // shorter, not the beginning
             Row{u"hey"_s, u"HE"_s, diverged},  // case counts
             Row{u"hey"_s, u"heyo"_s, extending},
             Row{u"hey"_s, u"hey"_s, extending}, // as long and equal
             Row{u"hey"_s, u"hex"_s, diverged},  // as long, different
             Row{u"hey"_s, u"Heyo"_s, diverged},
         }) {
        QXSDKKovalinSearchSequence sequence;
        if (!row.last.isEmpty()) {
            sequence.push(row.last, typed);
        }
        const auto stateBefore = sequence.state();
        EXPECT_EQ(sequence.nextState(row.text), row.next) << row.last.toStdString() << " " << row.text.toStdString();
        EXPECT_EQ(sequence.state(), stateBefore);
        EXPECT_EQ(sequence.lastTextEntry(), row.last);
    }
}

TEST(QXSDKKovalinSearchSequence, GoesFromEveryStateByEveryKindOfText)
{
    struct Row {
        QXSDKKovalinSearchSequenceState before;
        QString text;
        QXSDKKovalinSearchSequenceState after;
        QStringList terms;
    };
    for (const Row& row : {
             Row{extending, u"hey!"_s, extending, {u"hey!/1"_s}},
             Row{extending, u"he"_s, shrinking, {u"hey/1"_s}},
             Row{extending, u"x"_s, diverged, {u"hey/1"_s, u"x/1"_s}},
             Row{extending, u""_s, diverged, {u"hey/1"_s, u"/1"_s}},
             Row{shrinking, u"hey!"_s, extending, {u"heyo/1"_s, u"hey!/1"_s}},
             Row{shrinking, u"he"_s, shrinking, {u"heyo/1"_s}},
             Row{shrinking, u"x"_s, diverged, {u"heyo/1"_s, u"x/1"_s}},
             Row{shrinking, u""_s, diverged, {u"heyo/1"_s, u"/1"_s}},
             Row{diverged, u"hey!"_s, extending, {u"other/1"_s, u"hey/1"_s, u"hey!/1"_s}},
             Row{diverged, u"he"_s, shrinking, {u"other/1"_s, u"hey/1"_s}},
             Row{diverged, u"x"_s, diverged, {u"other/1"_s, u"hey/1"_s, u"x/1"_s}},
             Row{diverged, u""_s, diverged, {u"other/1"_s, u"hey/1"_s, u"/1"_s}},
         }) {
        auto sequence = sequenceIn(row.before);
        sequence.push(row.text, typed);
        EXPECT_EQ(sequence.state(), row.after) << row.before << " " << row.text.toStdString();
        EXPECT_EQ(sequence.lastTextEntry(), row.text);
        EXPECT_EQ(described(sequence.sequence()), row.terms) << row.before << " " << row.text.toStdString();
    }
}

TEST(QXSDKKovalinSearchSequence, ReplacesOnlyTheLastTextsOwnTerm)
{
    // Extending, but a tag stands behind the text's term, of another text or of the same.
    for (const auto& tag : {u"tag"_s, u"hey"_s}) {
        auto sequence = sequenceIn(extending);
        sequence.push(tag, defaultTag);
        sequence.push(u"hey!"_s, typed);
        EXPECT_EQ(described(sequence.sequence()), QStringList({u"hey/1"_s, tag + u"/3"_s, u"hey!/1"_s}));
    }
}

TEST(QXSDKKovalinSearchSequence, TakesAnEqualTextOfAnotherOriginForAnotherTerm)
{
    QXSDKKovalinSearchSequence sequence;
    const QString text = u"hey"_s; // the very same string data, which must not count as the same term
    sequence.push(text, typed);
    sequence.push(text, suggestedTag);
    sequence.push(text, hostTerm);
    EXPECT_EQ(described(sequence.sequence()), QStringList({u"hey/1"_s, u"hey/2"_s, u"hey/4"_s}));
}

TEST(QXSDKKovalinSearchSequence, LeavesOneTermOfATextTypedLetterByLetter)
{
    QXSDKKovalinSearchSequence sequence;
    type(sequence, {u"h"_s, u"he"_s, u"hey"_s});
    EXPECT_EQ(described(sequence.popAll()), QStringList{u"hey/1"_s});
}

TEST(QXSDKKovalinSearchSequence, KeepsTheLongestTextOfEachRun)
{
    QXSDKKovalinSearchSequence sequence;
    type(sequence, {u"h"_s, u"he"_s, u"hey"_s, u"he"_s, u"hel"_s, u"hell"_s});
    EXPECT_EQ(described(sequence.popAll()), QStringList({u"hey/1"_s, u"hell/1"_s}));
}

TEST(QXSDKKovalinSearchSequence, DivergesWhenTheFieldIsCleared)
{
    QXSDKKovalinSearchSequence sequence;
    type(sequence, {u"he"_s, u""_s});
    EXPECT_EQ(sequence.state(), diverged);
    EXPECT_EQ(described(sequence.sequence()), QStringList({u"he/1"_s, u"/1"_s}));

    type(sequence, {u"y"_s});
    EXPECT_EQ(sequence.state(), extending);
    EXPECT_EQ(described(sequence.sequence()), QStringList({u"he/1"_s, u"/1"_s, u"y/1"_s}));
    EXPECT_EQ(described(sequence.popAll()), QStringList({u"he/1"_s, u"y/1"_s}));
}

TEST(QXSDKKovalinSearchSequence, ReplacesAPastedTextFromTheSecondLetterOn)
{
    QXSDKKovalinSearchSequence sequence;
    type(sequence, {u"hey"_s, u"pasted"_s});
    EXPECT_EQ(described(sequence.sequence()), QStringList({u"hey/1"_s, u"pasted/1"_s}));
    type(sequence, {u"pasted "_s});
    EXPECT_EQ(described(sequence.sequence()), QStringList({u"hey/1"_s, u"pasted/1"_s, u"pasted /1"_s}));
    type(sequence, {u"pasted t"_s, u"pasted te"_s});
    EXPECT_EQ(described(sequence.sequence()), QStringList({u"hey/1"_s, u"pasted/1"_s, u"pasted te/1"_s}));
}

TEST(QXSDKKovalinSearchSequence, KeepsATagBetweenTwoTexts)
{
    QXSDKKovalinSearchSequence sequence;
    type(sequence, {u"ha"_s});
    sequence.push(u"happy"_s, suggestedTag);
    EXPECT_EQ(sequence.state(), extending);
    EXPECT_EQ(sequence.lastTextEntry(), u"ha"_s);
    type(sequence, {u"hap"_s, u"happ"_s});
    EXPECT_EQ(described(sequence.popAll()), QStringList({u"ha/1"_s, u"happy/2"_s, u"happ/1"_s}));
}

TEST(QXSDKKovalinSearchSequence, AddsARepetitionOnce)
{
    for (const auto state : {extending, shrinking, diverged}) {
        for (const auto category : {typed, suggestedTag, defaultTag, hostTerm}) {
            auto sequence = sequenceIn(state);
            sequence.push(u"again"_s, category);
            const auto terms = described(sequence.sequence());
            const auto stateAfter = sequence.state();
            sequence.push(u"again"_s, category);
            EXPECT_EQ(described(sequence.sequence()), terms);
            EXPECT_EQ(sequence.state(), stateAfter);
        }
    }
}

TEST(QXSDKKovalinSearchSequence, AddsTheSameTextOfATagBesideATypedOne)
{
    QXSDKKovalinSearchSequence sequence;
    sequence.push(u"hey"_s, suggestedTag);
    sequence.push(u"hey"_s, defaultTag);
    sequence.push(u"hey"_s, typed);
    EXPECT_EQ(described(sequence.popAll()), QStringList({u"hey/2"_s, u"hey/3"_s, u"hey/1"_s}));
}

TEST(QXSDKKovalinSearchSequence, ReplacesATypedTextByTheHostsOfTheSameText)
{
    // Both are texts, and an equal text extends: the later takes the place of the earlier.
    QXSDKKovalinSearchSequence sequence;
    sequence.push(u"hey"_s, typed);
    sequence.push(u"hey"_s, hostTerm);
    EXPECT_EQ(described(sequence.popAll()), QStringList{u"hey/4"_s});
}

TEST(QXSDKKovalinSearchSequence, TreatsTheHostsTextsLikeTypedOnes)
{
    QXSDKKovalinSearchSequence sequence;
    sequence.push(u"h"_s, hostTerm);
    sequence.push(u"he"_s, hostTerm);
    sequence.push(u"h"_s, hostTerm);
    EXPECT_EQ(sequence.state(), shrinking);
    EXPECT_EQ(described(sequence.popAll()), QStringList{u"he/4"_s});
}

TEST(QXSDKKovalinSearchSequence, IgnoresCategoryZero)
{
    QXSDKKovalinSearchSequence sequence;
    type(sequence, {u"he"_s});
    sequence.push(u"hey"_s, QXSDKKovalinCategoryNone);
    EXPECT_EQ(sequence.lastTextEntry(), u"he"_s);
    EXPECT_EQ(described(sequence.popAll()), QStringList{u"he/1"_s});
}

TEST(QXSDKKovalinSearchSequence, AppendsCategoriesItDoesNotKnowLikeTags)
{
    QXSDKKovalinSearchSequence sequence;
    sequence.push(u"a"_s, static_cast<QXSDKKovalinCategory>(9));
    sequence.push(u"ab"_s, static_cast<QXSDKKovalinCategory>(9));
    EXPECT_EQ(sequence.state(), diverged);
    EXPECT_EQ(described(sequence.popAll()), QStringList({u"a/9"_s, u"ab/9"_s}));
}

TEST(QXSDKKovalinSearchSequence, StartsAfreshAfterPopping)
{
    QXSDKKovalinSearchSequence sequence;
    type(sequence, {u"hey"_s});
    EXPECT_EQ(sequence.popAll().size(), 1);
    EXPECT_EQ(sequence.state(), diverged);
    EXPECT_EQ(sequence.lastTextEntry(), QString());
    EXPECT_TRUE(sequence.popAll().isEmpty());

    // Not a repetition, and nothing to extend.
    type(sequence, {u"hey"_s});
    EXPECT_EQ(described(sequence.popAll()), QStringList{u"hey/1"_s});
}
