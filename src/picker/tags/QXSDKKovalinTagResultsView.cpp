#include "picker/tags/QXSDKKovalinTagResultsView.h"

#include "content/QXSDKKovalinFriendState.h"
#include "picker/tags/QXSDKKovalinTagHeaderView.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/ui/Button.h"

#include <utility>

using namespace kovalin::platform;

namespace {

constexpr int headerHeight = 40; // points

} // namespace

QXSDKKovalinTagResultsViewDelegate::~QXSDKKovalinTagResultsViewDelegate() = default;

struct QXSDKKovalinTagResultsView::State {
    const std::shared_ptr<QXSDKKovalinFriendState> friendState;
    const QXSDKKovalinStickerGridController::Ptr gridController;
    const std::shared_ptr<QXSDKKovalinTagHeaderView> headerView;
    const QXSDKTagTilePtr tagTile;
    const List kovalins;
    std::weak_ptr<QXSDKKovalinTagResultsViewDelegate> delegate = {};
};

std::shared_ptr<QXSDKKovalinTagResultsView> QXSDKKovalinTagResultsView::create(
    const QXSDKTagTilePtr& tagTile, const List& kovalins, const std::shared_ptr<QXSDKKovalinFriendState>& friendState,
    const QXSDKKovalinStickerPickerConfigPtr& config, const std::shared_ptr<QXSDKKovalinCache>& cache)
{
    const auto chosen = config ? config : std::make_shared<QXSDKKovalinStickerPickerConfig>();
    const auto grid = QXSDKKovalinStickerGridController::create(kovalins, chosen, cache);
    grid->setTopInset(headerHeight);
    grid->setFriendAvatarId(friendState->friendAvatarId());
    const auto header = makeView<QXSDKKovalinTagHeaderView>(tagTile, chosen);
    auto state = std::make_unique<State>(State{friendState, grid, header, tagTile, kovalins});

    const std::shared_ptr<QXSDKKovalinTagResultsView> page(new QXSDKKovalinTagResultsView(std::move(state)),
                                                           ViewDeleter());
    page->setBackgroundColor(chosen->theme()->backgroundColor());
    grid->setDelegate(page);
    friendState->addFriendAvatarObserver(page);
    return page;
}

QXSDKKovalinTagResultsView::QXSDKKovalinTagResultsView(std::unique_ptr<State> state)
    : _page(std::move(state))
{
    QXSDKKovalinTagHeaderView& header = *_page->headerView;
    header.setOnTap([this] { _backPressed(); });
    header.backButton()->setOnTouchUpInside([this] { _backPressed(); });
    header.cancelButton()->setOnTouchUpInside([this] { _cancelPressed(); });
    setScrollView(_page->gridController->view());
    setMaxNavbarOffset(headerHeight);
    addSubview(_page->gridController->view());
    addSubview(_page->headerView);
}

QXSDKKovalinTagResultsView::~QXSDKKovalinTagResultsView()
{
    // Somebody else may still hold the parts.
    _page->headerView->setOnTap({});
    _page->headerView->backButton()->setOnTouchUpInside({});
    _page->headerView->cancelButton()->setOnTouchUpInside({});
}

void QXSDKKovalinTagResultsView::setDelegate(const std::weak_ptr<QXSDKKovalinTagResultsViewDelegate>& delegate)
{
    assertOnMainThread();
    _page->delegate = delegate;
}

void QXSDKKovalinTagResultsView::layoutSubviews()
{
    QXSDKHideableNavbarView::layoutSubviews();
    _page->gridController->view()->setFrame(bounds());
    _page->headerView->setFrame({0, -navbarOffset(), bounds().width(), headerHeight});
}

// Events

void QXSDKKovalinTagResultsView::stickerGridControllerDidSelectSticker(const KovalinStickerPtr& sticker,
                                                                       const QImage& image)
{
    if (const auto delegate = _page->delegate.lock()) {
        delegate->kovalinTagResultsViewDidSelectKovalinWithURL(sticker, image, _page->tagTile);
    }
}

void QXSDKKovalinTagResultsView::stickerGridControllerDidScroll(ScrollView& /*scrollView*/)
{
    updateNavbarOffset();
}

void QXSDKKovalinTagResultsView::stickerGridControllerDidRenderFirstSticker() {}

void QXSDKKovalinTagResultsView::kovalinFriendAvatarDidChange(const std::optional<QString>& friendAvatarId,
                                                              const QStringList& /*otherAvatarIds*/)
{
    _page->gridController->setFriendAvatarId(friendAvatarId);
}

void QXSDKKovalinTagResultsView::_backPressed()
{
    if (const auto delegate = _page->delegate.lock()) {
        delegate->kovalinTagResultsViewDidTapBack();
    }
}

void QXSDKKovalinTagResultsView::_cancelPressed()
{
    if (const auto delegate = _page->delegate.lock()) {
        delegate->kovalinTagResultsViewDidTapCancel();
    }
}
