#pragma once

#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/tags/QXSDKTagTile.h"
#include "platform/ui/View.h"

#include <QtCore/QPointF>

#include <functional>
#include <memory>

namespace kovalin::platform {
class Button;
} // namespace kovalin::platform

/// The bar over a tag's stickers: the search's icon, the tag's pill, and buttons that lead back and away. Thread and
/// lifetime as of `View`.
class QXSDKKovalinTagHeaderView final : public kovalin::platform::View {
    Q_OBJECT

public:
    /// Takes the colours of the configuration's theme, or of the default one if that is null.
    ///
    /// Requires: the tile isn't null.
    QXSDKKovalinTagHeaderView(const QXSDKTagTilePtr& tagTile, const QXSDKKovalinStickerPickerConfigPtr& config);
    ~QXSDKKovalinTagHeaderView() override;

    [[nodiscard]] const std::shared_ptr<kovalin::platform::Button>& backButton() const;
    [[nodiscard]] const std::shared_ptr<kovalin::platform::Button>& cancelButton() const;

    /// A tap anywhere but on the buttons. Called on the main thread; may do anything, such as letting go of the header.
    void setOnTap(std::function<void()> handler);

    void layoutSubviews() override;

protected:
    void didMoveToWindow() override;
    void devicePixelRatioDidChange() override;

    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;

private:
    struct State;

    void _setUpButtons();
    void _drawPictures();

    const std::unique_ptr<State> _header;
};
