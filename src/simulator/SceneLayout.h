/// Where land and water lie in a scene.
#pragma once

#include "simulator/Ridge.h"
#include "simulator/Scene.h"

#include <vector>

namespace nivor {

/// Places are measured in picture heights from the top.
struct SceneLayout {
    std::vector<Ridge::Form> land{};        ///< behind the water, from far to near
    std::vector<Ridge::Form> foreground{};  ///< in front of it
    float horizon = 0.66F;                  ///< where the sky ends
    float waterline = 1;                    ///< where the water begins; 1 = there is none

    static SceneLayout of(const Scene& scene);
};

}  // namespace nivor
