/// The colours and the light of an hour of the day.
#pragma once

#include "simulator/Rgb.h"
#include "simulator/Scene.h"

namespace nivor {

struct Mood {
    Rgb zenith;
    Rgb middle;  ///< of the sky, halfway down
    Rgb horizon;
    Rgb haze;   ///< what distant land fades to
    Rgb light;  ///< falls on the land, as a factor
    Rgb sun;
    Rgb cloudLit;
    Rgb cloudShade;
    float sunHeight;   ///< above the horizon, as a share of the sky; below 0 = not seen
    float cloudCover;  ///< 0 to 1
    bool stars;

    static const Mood& of(Hour hour);
};

}  // namespace nivor
