/// The sky of a drawn landscape.
#pragma once

#include "simulator/Mood.h"
#include "simulator/Rgb.h"
#include "simulator/ValueNoise.h"

#include <vector>

namespace nivor {

/// Places are measured in picture heights from the top left corner.
class Sky {
public:
    /// `horizon` is where it ends below, `sunX` where sun or moon stand.
    Sky(const Scene& scene, float horizon, float sunX);

    /// Calculates the clouds for pictures of these extents; call it before `at`.
    void prepare(int width, int height);

    [[nodiscard]] Rgb at(float x, float y) const;

    [[nodiscard]] float sunX() const { return sunX_; }
    [[nodiscard]] float sunY() const { return sunY_; }

private:
    struct Cloud {
        float density;
        float brightness;
    };

    [[nodiscard]] Cloud cloudFrom(float x, float y) const;
    [[nodiscard]] Cloud cloudAt(float x, float y) const;
    [[nodiscard]] Rgb gradient(float y) const;
    [[nodiscard]] float star(float x, float y) const;
    [[nodiscard]] Rgb aurora(float x, float y) const;

    const Mood& mood_;
    const Hour hour_;
    const ValueNoise noise_;
    const float horizon_;
    const float sunX_;
    const float sunY_;

    float pixel_ = 0;  // its extent
    int columns_ = 0;  // of the grid that clouds are calculated on
    int rows_ = 0;
    float gridStep_ = 0;
    std::vector<Cloud> clouds_;
};

}  // namespace nivor
