#include "platform/ui/CollectionViewCell.h"

#include "platform/ui/CollectionView.h"

namespace kovalin::platform {

struct CollectionViewCell::State {
    QString reuseIdentifier;
    std::weak_ptr<CollectionView> collectionView;
    bool isPressed = false;
    bool isHighlighted = false;
};

CollectionViewCell::CollectionViewCell()
    : _cell(std::make_unique<State>())
{
    setAcceptedMouseButtons(Qt::LeftButton);
}

CollectionViewCell::~CollectionViewCell() = default;

bool CollectionViewCell::isHighlighted() const
{
    return _cell->isHighlighted;
}

void CollectionViewCell::setHighlighted(bool isHighlighted)
{
    _cell->isHighlighted = isHighlighted;
}

void CollectionViewCell::prepareForReuse() {}

QString CollectionViewCell::reuseIdentifier() const
{
    return _cell->reuseIdentifier;
}

void CollectionViewCell::belongTo(const std::weak_ptr<CollectionView>& collectionView, const QString& reuseIdentifier)
{
    _cell->collectionView = collectionView;
    _cell->reuseIdentifier = reuseIdentifier;
}

void CollectionViewCell::cancelPress()
{
    _cell->isPressed = false;
    highlight(false);
}

void CollectionViewCell::highlight(bool isHighlighted)
{
    if (isHighlighted != _cell->isHighlighted) {
        setHighlighted(isHighlighted);
    }
}

void CollectionViewCell::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    _cell->isPressed = true;
    highlight(true);
}

void CollectionViewCell::mouseMoveEvent(QMouseEvent* event)
{
    if (_cell->isPressed) {
        highlight(contains(event->position()));
    }
}

void CollectionViewCell::mouseReleaseEvent(QMouseEvent* event)
{
    if (!_cell->isPressed) {
        return;
    }
    // Who is told may let the cell and its collection view go.
    const auto self = weak_from_this().lock();
    const auto collectionView = _cell->collectionView.lock();
    cancelPress();
    if (self && collectionView && contains(event->position())) {
        collectionView->cellWasTapped(*this);
    }
}

void CollectionViewCell::mouseUngrabEvent()
{
    // It also comes after each release.
    if (_cell->isPressed) {
        cancelPress();
    }
}

} // namespace kovalin::platform
