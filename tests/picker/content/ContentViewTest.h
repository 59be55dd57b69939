#pragma once

#include "content/ContentTest.h"
#include "content/QXSDKKovalinFriendCache.h"
#include "content/QXSDKKovalinFriendState.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"
#include "picker/content/ContentViewParts.h"
#include "picker/content/RecordingContentDelegate.h"
#include "picker/content/ScriptedSearchEngine.h"
#include "picker/grid/LoopbackPictures.h"
#include "platform/ui/Button.h"
#include "platform/ui/ImageView.h"
#include "support/ManualAnimationDriver.h"
#include "support/QtPrinting.h"
#include "support/ViewTest.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QUuid>
#include <QtGui/QGuiApplication>
#include <QtGui/QStyleHints>
#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kovalin::test {

/// A content view in a window, four tiles of 78 points in a row below the two bars, with a popular list of three rows, the
/// default tags "Popular" and "Moods", and an engine that a test answers for. Time passes in `settle` alone.
class ContentViewTest : protected WithLoopbackPictures, public ViewTest {
protected:
    using View = QXSDKKovalinStickerPickerContentView;
    using Cell = QXSDKKovalinStickerCollectionViewCell;

    static constexpr int width = 320;
    static constexpr int height = 402;
    static constexpr QPointF inField{160, 20};

    ContentViewTest()
    {
        QGuiApplication::styleHints()->setCursorFlashTime(0); // no blinking
        window().resize(width, height);
        root()->setFrame({0, 0, width, height});
        pictures.script("/red", Qt::red);
        pictures.script("/blue", Qt::blue);
        pictures.hold("/held", Qt::green);
        setContent(rows(3));
    }

    ~ContentViewTest() override
    {
        if (view) {
            view->setNavbarOffset(0); // a pending return holds the view
        }
        QGuiApplication::styleHints()->setCursorFlashTime(-1);
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    }

    // What there is to show

    [[nodiscard]] KovalinStickerPtr sticker(const QString& comicId, const char* path = "/red") const
    {
        auto made = std::make_shared<KovalinSticker>();
        made->setComicId(comicId);
        made->setUrl(pictures.url(path).toString());
        return made;
    }
    [[nodiscard]] KovalinStickerPtr friendSticker(const QString& comicId, const char* path = "/two") const
    {
        auto made = std::make_shared<KovalinSticker>();
        made->setComicId(comicId);
        made->setUrl(pictures.url(path).toString() + QStringLiteral("/%s"));
        made->setFriendvalin(true);
        return made;
    }
    [[nodiscard]] KovalinStickerList rows(int count, const QString& prefix = QStringLiteral("popular")) const
    {
        KovalinStickerList stickers;
        for (int i = 0; i < 4 * count; ++i) {
            stickers.append(sticker(prefix + QString::number(i)));
        }
        return stickers;
    }
    void setContent(const KovalinStickerList& popular)
    {
        auto first = std::make_shared<KovalinPack>();
        first->setPackId(QStringLiteral("popular"));
        first->setName(QStringLiteral("Popular"));
        first->setVisible(true);
        first->setStickers(popular);
        provider->setPacks(KovalinPackList{first, namedPack(QStringLiteral("moods"), QStringLiteral("Moods"))});
    }
    /// A friend whose avatar is known.
    void setFriend(const QString& avatarId)
    {
        const QString user = QUuid::createUuid().toString();
        QXSDKKovalinFriendCache::shared()->updateWithData({{user, avatarId}});
        friends->setFriendUserIds({user}, 0);
    }

    // Showing

    [[nodiscard]] View::Sources sources() const { return {engine, engine, provider, pictures.cache}; }
    [[nodiscard]] QXSDKKovalinStickerPickerConfigPtr configWith(bool showSearchBar, bool showSearchPills) const
    {
        return QXSDKKovalinStickerPickerConfigBuilder()
            .withShowSearchBar(showSearchBar)
            .withShowSearchPills(showSearchPills)
            .build();
    }
    void make(const QXSDKKovalinStickerPickerConfigPtr& config = std::make_shared<QXSDKKovalinStickerPickerConfig>())
    {
        view = View::create({0, 0, width, height}, friends, config, sources());
        view->setDelegate(delegate);
        root()->addSubview(view);
        settle();
    }
    /// Makes the view and shows the popular list, as its owner does.
    void open(const QXSDKKovalinStickerPickerConfigPtr& config = std::make_shared<QXSDKKovalinStickerPickerConfig>())
    {
        make(config);
        view->showPopularKovalinsAndDefaultTagTiles();
        settle();
    }
    void settle()
    {
        driver.step(std::chrono::milliseconds(0));
        driver.step(std::chrono::milliseconds(1000));
        drainMainQueue();
        grab();
    }

    // The parts

    [[nodiscard]] std::shared_ptr<platform::CollectionView> grid() const { return gridOf(*view); }
    [[nodiscard]] std::shared_ptr<QXSDKKovalinTagSelectorView> strip() const { return stripOf(*view); }
    [[nodiscard]] std::shared_ptr<KovalinSearchBarView> bar() const { return barOf(*view); }
    [[nodiscard]] std::shared_ptr<QXSDKKovalinTagResultsView> results() const { return resultsOf(*view); }
    [[nodiscard]] std::shared_ptr<platform::CollectionView> resultsGrid() const { return gridOf(*results()); }
    [[nodiscard]] std::shared_ptr<QXSDKKovalinTagHeaderView> resultsHeader() const { return headerOf(*results()); }

    [[nodiscard]] QStringList shown() const { return comicIdsOf(*view->kovalins()); }
    [[nodiscard]] QStringList popular() const { return comicIdsOf(*provider->popularKovalins()); }
    [[nodiscard]] static QStringList defaultTags() { return {QStringLiteral("Popular"), QStringLiteral("Moods")}; }

    // What a user does

    void focusField() { tap(inField); }
    /// Into whatever has the focus.
    void type(const char* text)
    {
        for (const char* letter = text; *letter != '\0'; ++letter) {
            QTest::keyClick(&window(), *letter);
        }
    }
    void key(Qt::Key key) { QTest::keyClick(&window(), key); }
    void search(const char* text)
    {
        focusField();
        type(text);
    }
    [[nodiscard]] bool isLoaded(const platform::CollectionView& list, qsizetype item)
    {
        return waitFor([&] {
            const auto cell = std::dynamic_pointer_cast<Cell>(list.cellForItemAtIndexPath(item));
            return cell && cell->isLoaded();
        });
    }
    /// Taps a tile once it has its picture.
    void tapTile(platform::CollectionView& list, qsizetype item)
    {
        settle();
        ASSERT_TRUE(isLoaded(list, item));
        tap(list.frameOfItem(item).center() - list.contentOffset());
    }
    void tapTag(qsizetype item)
    {
        settle();
        tap(middleOfPill(*strip(), item) + strip()->frame().topLeft());
        settle();
    }
    /// So that the grid has scrolled by `top` points from its rest at the top.
    void scrollTo(double top)
    {
        grid()->setContentOffset({-4, top - grid()->contentInset().top()}, false);
        grab();
    }

    OwnCachesDirectory caches;
    ManualAnimationDriver driver;
    QXSDKKovalinStickerPickerSessionManager sessions;
    std::shared_ptr<QXSDKKovalinFriendState> friends = QXSDKKovalinFriendState::create(sessions);
    std::shared_ptr<QXSDKKovalinPacksArchive> archive = QXSDKKovalinPacksArchive::create();
    std::shared_ptr<QXSDKKovalinStickerDataProvider> provider = QXSDKKovalinStickerDataProvider::create(archive);
    std::shared_ptr<ScriptedSearchEngine> engine = std::make_shared<ScriptedSearchEngine>();
    std::shared_ptr<RecordingContentDelegate> delegate = std::make_shared<RecordingContentDelegate>();
    std::shared_ptr<View> view;
};

} // namespace kovalin::test
