#pragma once

#include "platform/ui/View.h"

#include <QtCore/QString>

#include <memory>

namespace kovalin::platform {

class CollectionView;

/// What a collection view shows an item in; used again for other items. Thread and lifetime as of `View`.
class CollectionViewCell : public View {
    Q_OBJECT

public:
    CollectionViewCell();
    ~CollectionViewCell() override;

    /// Whether the cell is being pressed, and the press would select it.
    [[nodiscard]] bool isHighlighted() const;
    /// The collection view calls this at each change. A subclass calls this one in its own.
    virtual void setHighlighted(bool isHighlighted);

    /// The cell leaves its item, and will be asked for again. Nothing by default: a cell that is given what it shows already may keep it.
    virtual void prepareForReuse();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;

private:
    friend class CollectionView;
    friend class CollectionViewCells;
    struct State;

    [[nodiscard]] QString reuseIdentifier() const;
    void belongTo(const std::weak_ptr<CollectionView>& collectionView, const QString& reuseIdentifier);
    void cancelPress();
    void highlight(bool isHighlighted);

    const std::unique_ptr<State> _cell;
};

} // namespace kovalin::platform
