/// Smooth random functions, the raw material of clouds and mountains.
#pragma once

#include <cstdint>

namespace nivor {

/// Functions of place alone, with values from 0 to 1; a seed selects one of them.
class ValueNoise {
public:
    explicit ValueNoise(std::uint32_t seed)
        : seed_(seed)
    {
    }

    /// A random value for each grid cell.
    [[nodiscard]] float cell(int x, int y) const;

    /// Varies smoothly over a length of 1.
    [[nodiscard]] float at(float x, float y) const;
    [[nodiscard]] float at(float x) const { return at(x, 0.5F); }

    /// Several octaves of it: coarse shapes with finer and finer detail.
    [[nodiscard]] float fractal(float x, float y, int octaves) const;
    [[nodiscard]] float fractal(float x, int octaves) const { return fractal(x, 0.5F, octaves); }

    /// Octaves with sharp crests, as mountains have them.
    [[nodiscard]] float ridged(float x, float y, int octaves) const;
    [[nodiscard]] float ridged(float x, int octaves) const { return ridged(x, 0.5F, octaves); }

private:
    std::uint32_t seed_;
};

}  // namespace nivor
