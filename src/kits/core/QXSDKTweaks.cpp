#include "kits/core/QXSDKTweaks.h"

#include <utility>

namespace {

QXSDKTweaksGesture& installedGesture()
{
    // Never destroyed, as nothing of the process is.
    static auto& gesture = *new QXSDKTweaksGesture;
    return gesture;
}

} // namespace

void setTweaksGesture(QXSDKTweaksGesture gesture)
{
    installedGesture() = std::move(gesture);
}

void addTweaksGesture(QObject& pickerView)
{
    if (const auto gesture = installedGesture()) { // which may take itself away
        gesture(pickerView);
    }
}
