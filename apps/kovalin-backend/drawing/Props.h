#pragma once

#include "kovalin-backend/drawing/Sketch.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace kovalin::drawing {

/// A thing that a figure has.
struct Prop {
    /// Where it belongs, and what its drawing has as origin.
    enum class Place : std::uint8_t {
        InHand,  // the middle of the right fist
        InFront, // the middle of the head; before the body
        OnHead,  // the middle of the head, nodding with it
        Above,   // the middle of the head; before everything
        Beside,  // the same
        Behind,  // the middle of the head; behind the body
    };

    std::string_view name;
    Place place;
    void (*draw)(Sketch& sketch);
    std::string_view gesture = {}; // what the arms do, unless the template says it; empty: they rest
    bool coversHands = false;      // for InFront
    bool isHat = false;            // for OnHead: nothing tall fits under it
};

/// Null when there is none of that name. The prop lives as long as the program; any thread.
[[nodiscard]] const Prop* propNamed(std::string_view name);

// The parts of the table.
[[nodiscard]] std::span<const Prop> foodProps();
[[nodiscard]] std::span<const Prop> handProps();
[[nodiscard]] std::span<const Prop> partyProps();
[[nodiscard]] std::span<const Prop> wornProps();
[[nodiscard]] std::span<const Prop> frontProps();
[[nodiscard]] std::span<const Prop> airProps();

} // namespace kovalin::drawing
