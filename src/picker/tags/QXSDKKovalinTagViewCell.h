#pragma once

#include "platform/ui/CollectionViewCell.h"

#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QColor>

#include <memory>

class QXSDKKovalinStickerPickerTheme;
class QXSDKKovalinTagView;

/// Puts a pill into a collection view; the pill fills it, and shows its presses. Thread and lifetime as of `View`.
class QXSDKKovalinTagViewCell final : public kovalin::platform::CollectionViewCell {
    Q_OBJECT

public:
    QXSDKKovalinTagViewCell();
    ~QXSDKKovalinTagViewCell() override;

    // The pill's.

    [[nodiscard]] static QSizeF sizeForText(const QString& text);
    void applyTheme(const QXSDKKovalinStickerPickerTheme& theme);
    [[nodiscard]] QString text() const;
    void setText(const QString& text);
    /// Of its ground.
    [[nodiscard]] QColor color() const;
    void setColor(const QColor& color);

    void prepareForReuse() override;
    void layoutSubviews() override;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;

private:
    const std::shared_ptr<QXSDKKovalinTagView> _tagView;
};
