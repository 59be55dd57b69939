#include "picker/grid/QXSDKCollectionViewUpdater.h"

#include "platform/ui/Spring.h"
#include "search/KovalinSticker.h"
#include "support/ManualAnimationDriver.h"
#include "support/ViewTest.h"

#include <gmock/gmock.h>

#include <type_traits>

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Known by its letter.
struct Letter {
    QChar letter;

    [[nodiscard]] bool isEqual(const Letter& other) const { return letter == other.letter; }
    [[nodiscard]] std::size_t hash() const { return letter.unicode() % 3; }
};

using Updater = QXSDKCollectionViewUpdater<Letter>;

/// Each call makes another list of other objects.
Updater::List letters(QStringView text)
{
    auto list = std::make_shared<QList<Updater::ItemPtr>>();
    for (const QChar letter : text) {
        list->append(std::make_shared<const Letter>(Letter{letter}));
    }
    return list;
}

QString textOf(const Updater::List& list)
{
    QString text;
    for (const auto& item : *list) {
        text.append(item->letter);
    }
    return text;
}

class LetterCell final : public CollectionViewCell {
public:
    QChar letter;
};

class Source final : public CollectionViewDataSource, public CollectionViewDelegate {
public:
    qsizetype collectionViewNumberOfItemsInSection(CollectionView&) override
    {
        return updater->displayedData()->size();
    }
    std::shared_ptr<CollectionViewCell> collectionViewCellForItemAtIndexPath(CollectionView& view,
                                                                             qsizetype item) override
    {
        asked.push_back(item);
        auto cell = std::static_pointer_cast<LetterCell>(view.dequeueReusableCell(QStringLiteral("letter"), item));
        cell->letter = updater->data()->at(item)->letter;
        return cell;
    }
    QString collectionViewAccessibilityLabelForItemAtIndexPath(CollectionView&, qsizetype) override { return {}; }
    QSizeF collectionViewLayoutSizeForItemAtIndexPath(CollectionView&, qsizetype) override { return {100, 50}; }
    void collectionViewDidSelectItemAtIndexPath(CollectionView&, qsizetype) override {}

    std::unique_ptr<Updater> updater;
    std::vector<qsizetype> asked;
};

/// A column of items of 50 points, some of which are on screen.
class QXSDKCollectionViewUpdaterTest : public ViewTest {
protected:
    QXSDKCollectionViewUpdaterTest()
    {
        const auto layout = std::make_shared<CollectionViewFlowLayout>();
        layout->setMinimumLineSpacing(0);
        view = makeView<CollectionView>(layout);
        view->registerCell(QStringLiteral("letter"), [] { return makeView<LetterCell>(); });
        root()->addSubview(view);
    }

    /// Shows `text`, with `rows` items on screen.
    void show(QStringView text, int rows)
    {
        view->setFrame(QRectF(0, 0, 100, rows * 50));
        source->updater = std::make_unique<Updater>(view, letters(text));
        view->setDataSource(source);
        view->setDelegate(source);
        grab();
        source->asked.clear();
    }
    void set(QStringView text) { source->updater->setData(letters(text)); }

    [[nodiscard]] std::shared_ptr<CollectionViewCell> cell(qsizetype item) const
    {
        return view->cellForItemAtIndexPath(item);
    }
    /// What the cells on screen show.
    [[nodiscard]] QString onScreen() const
    {
        QString text;
        for (const qsizetype item : view->indexPathsForVisibleItems()) {
            text.append(cell(item) ? static_cast<const LetterCell&>(*cell(item)).letter : QChar(u'-'));
        }
        return text;
    }

    ManualAnimationDriver driver;
    std::shared_ptr<CollectionView> view;
    std::shared_ptr<Source> source = std::make_shared<Source>();
};

static_assert(
    std::is_same_v<QXSDKCollectionViewUpdater<KovalinSticker>::List, std::shared_ptr<const KovalinStickerList>>);

TEST_F(QXSDKCollectionViewUpdaterTest, StartsWithTheListDisplayedAndWithoutAnAnimation)
{
    const auto list = letters(u"ABC");
    const Updater updater(view, list);
    EXPECT_EQ(updater.data(), list);
    EXPECT_EQ(updater.displayedData(), list);

    show(u"ABC", 3);
    EXPECT_EQ(onScreen(), u"ABC");
    EXPECT_EQ(cell(0)->opacity(), 1);
}

TEST_F(QXSDKCollectionViewUpdaterTest, TakesAnAbsentListForAnEmptyOne)
{
    EXPECT_EQ(textOf(Updater(view).data()), u"");
    EXPECT_EQ(textOf(Updater(view, nullptr).displayedData()), u"");
    show(u"ABC", 3);
    source->updater->setData(nullptr);
    EXPECT_EQ(textOf(source->updater->data()), u"");
    EXPECT_EQ(view->numberOfItems(), 0);
}

TEST_F(QXSDKCollectionViewUpdaterTest, KeepsTheVeryListThatIsSet)
{
    show(u"ABC", 3);
    const auto list = letters(u"CD");
    source->updater->setData(list);
    EXPECT_EQ(source->updater->data(), list);
    EXPECT_EQ(source->updater->displayedData(), list);
}

TEST_F(QXSDKCollectionViewUpdaterTest, MovesWhatIsOnScreenBeforeAndAfterAndReplacesTheRest)
{
    show(u"ABC", 2);
    const auto a = cell(0);
    const auto b = cell(1);
    set(u"BAD");
    EXPECT_EQ(cell(0), b);
    EXPECT_EQ(cell(1), a);
    EXPECT_THAT(source->asked, ElementsAre(2)) << "the third was deleted and inserted";
    EXPECT_EQ(b->y(), 50) << "where it was, on screen";
    EXPECT_EQ(b->frame(), QRectF(0, 0, 100, 50));
    driver.step(0ms);
    driver.step(400ms);
    EXPECT_EQ(b->y(), 0);
    EXPECT_EQ(a->y(), 50);
    EXPECT_EQ(onScreen(), u"BA");
}

TEST_F(QXSDKCollectionViewUpdaterTest, MovesByASpringOfFourTenthsOfASecond)
{
    show(u"ABC", 3);
    const auto c = cell(2);
    set(u"CAB");
    const Spring spring(double(0.7F), 0);
    driver.step(0ms);
    for (const int time : {50, 100, 200, 300}) {
        driver.step(std::chrono::milliseconds(time) - std::chrono::milliseconds(driver.elapsed()));
        EXPECT_NEAR(c->y(), 100 - 100 * spring.progress(time / 400.0), 1e-3) << time;
    }
    driver.step(99ms);
    EXPECT_NE(c->y(), 0);
    driver.step(1ms);
    EXPECT_EQ(c->y(), 0);
}

TEST_F(QXSDKCollectionViewUpdaterTest, DeletesAllForAnEmptyList)
{
    show(u"ABC", 3);
    set(u"");
    EXPECT_EQ(view->numberOfItems(), 0);
    EXPECT_FALSE(cell(0));
    EXPECT_THAT(source->asked, IsEmpty());
}

TEST_F(QXSDKCollectionViewUpdaterTest, InsertsAllIntoAnEmptyList)
{
    show(u"", 3);
    set(u"ABC");
    EXPECT_EQ(view->numberOfItems(), 3);
    EXPECT_EQ(onScreen(), u"ABC");
    EXPECT_THAT(source->asked, ElementsAre(0, 1, 2));
}

TEST_F(QXSDKCollectionViewUpdaterTest, LeavesWhatStaysOnScreenAlone)
{
    show(u"ABCDE", 2);
    const auto a = cell(0);
    const auto b = cell(1);
    set(u"ABCDE");
    EXPECT_EQ(cell(0), a);
    EXPECT_EQ(cell(1), b);
    EXPECT_THAT(source->asked, ElementsAre(2)) << "off screen, and ready for scrolling";
}

TEST_F(QXSDKCollectionViewUpdaterTest, DeletesAndInsertsWhatLeavesTheScreen)
{
    show(u"AB", 2);
    const auto a = cell(0);
    set(u"BCA");
    EXPECT_EQ(onScreen(), u"BC");
    EXPECT_NE(cell(2), a);
    EXPECT_THAT(source->asked, ElementsAre(1, 2));
    EXPECT_EQ(view->indexPathForCell(*a), -1);
}

TEST_F(QXSDKCollectionViewUpdaterTest, DeletesAndInsertsWhatComesFromOffScreen)
{
    show(u"ABC", 2);
    const auto c = cell(2);
    ASSERT_TRUE(c);
    source->asked.clear();
    set(u"CAB");
    EXPECT_EQ(onScreen(), u"CA");
    EXPECT_NE(source->asked, std::vector<qsizetype>());
    EXPECT_EQ(source->asked.front(), 0) << "asked for, not moved";
}

TEST_F(QXSDKCollectionViewUpdaterTest, MovesToTheLastOfEqualItems)
{
    show(u"ABC", 3);
    const auto a = cell(0);
    set(u"ABA");
    EXPECT_EQ(cell(2), a);
    EXPECT_NE(cell(0), a);
    EXPECT_EQ(onScreen(), u"ABA");
}

TEST_F(QXSDKCollectionViewUpdaterTest, ReloadsWhereItemsWereDisplayedTwice)
{
    show(u"AAB", 3);
    set(u"BA");
    grab();
    EXPECT_EQ(view->numberOfItems(), 2);
    EXPECT_EQ(onScreen(), u"BA");
    EXPECT_EQ(textOf(source->updater->displayedData()), u"BA");
}

TEST_F(QXSDKCollectionViewUpdaterTest, StartsTheNextBatchOverWhatTheLastOneLedTo)
{
    show(u"ABC", 3);
    const auto c = cell(2);
    set(u"CAB");
    driver.step(0ms);
    driver.step(100ms);
    const double between = c->y();
    ASSERT_GT(between, 0);
    ASSERT_LT(between, 100);
    set(u"ACD");
    EXPECT_EQ(cell(1), c);
    EXPECT_NEAR(c->y(), between, 1e-9) << "it goes on from where it is";
    driver.step(0ms);
    driver.step(400ms);
    EXPECT_EQ(c->y(), 50);
    EXPECT_EQ(onScreen(), u"ACD");
}

TEST_F(QXSDKCollectionViewUpdaterTest, ChangesAListThatWasNeverLaidOut)
{
    source->updater = std::make_unique<Updater>(view, letters(u"ABC"));
    view->setDataSource(source);
    view->setDelegate(source);
    set(u"BAD");
    set(u"XY");
    view->setFrame({0, 0, 100, 150});
    grab();
    EXPECT_EQ(onScreen(), u"XY");
}

TEST_F(QXSDKCollectionViewUpdaterTest, ShowsEachItemInItsPlaceRightAfterAScroll)
{
    show(u"ABCDEFGHIJ", 2);
    view->setContentOffset({0, 400}, false);
    grab();
    ASSERT_EQ(onScreen(), u"IJ");
    view->setContentOffset({0, 0}, false);
    set(u"BAC");
    EXPECT_EQ(onScreen(), u"BA");
    driver.step(0ms);
    driver.step(400ms);
    grab();
    EXPECT_EQ(onScreen(), u"BA");
}

} // namespace
