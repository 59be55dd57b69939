#include "picker/views/KovalinViewHelpers.h"

#include "platform/ui/Animation.h"

using namespace kovalin::platform;

namespace {

constexpr AnimationSeconds pressDuration(0.2);
constexpr double pressedScale = 0.85F;
/// Points towards the viewer.
constexpr double pressedDepth = 50;

} // namespace

QMarginsF obscuredAreaInsets(const View& view)
{
    return view.safeAreaInsets();
}

void animateViewForPressedState(View& view, bool isPressed)
{
    ViewTransform transform;
    if (isPressed) {
        transform = ViewTransform::scale(pressedScale, pressedScale);
        transform.depth = pressedDepth;
    }
    animate(pressDuration, AnimationSeconds(0), [&] { view.setTransform(transform); });
}
