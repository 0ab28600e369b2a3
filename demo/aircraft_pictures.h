// What the example's aircraft look like: pictures in flight, livery textures and instrument panels.
#pragma once

#include "demo/canvas.h"

namespace korvadex::demo {

enum class AircraftKind { LightProp, Amphibian, HeavyProp, Jet, Helicopter };

struct Livery {
    Color body, stripe, belly;
};

enum class Scene { Day, Dusk, Lake };

// The aircraft in side view, nose to the right, before a sky.
Canvas DrawAircraft(AircraftKind kind, const Livery& livery, Scene scene, int width, int height);
// A livery sheet as it is wrapped around the model; `sheet` tells one sheet of an aircraft from the next.
Canvas DrawLivery(const Livery& livery, int sheet, int size);
// An instrument panel with round dials in two rows.
Canvas DrawPanel(const Livery& livery, int dials, int width, int height);

} // namespace korvadex::demo
