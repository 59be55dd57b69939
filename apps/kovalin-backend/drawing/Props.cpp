#include "kovalin-backend/drawing/Props.h"

#include <algorithm>

namespace kovalin::drawing {

const Prop* propNamed(std::string_view name)
{
    for (const auto& props : {foodProps(), handProps(), partyProps(), wornProps(), frontProps(), airProps()}) {
        const auto found =
            std::find_if(props.begin(), props.end(), [&](const Prop& prop) { return prop.name == name; });
        if (found != props.end()) {
            return &*found;
        }
    }
    return nullptr;
}

} // namespace kovalin::drawing
