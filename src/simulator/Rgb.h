/// A colour to calculate with.
#pragma once

#include <algorithm>
#include <cstdint>

namespace nivor {

/// Red, green and blue from 0 to 1; sums may leave that range until `clamped`.
struct Rgb {
    float r = 0;
    float g = 0;
    float b = 0;

    /// From the usual notation 0xRRGGBB.
    static constexpr Rgb hex(std::uint32_t code)
    {
        constexpr float most = 255;
        return {static_cast<float>(code >> 16 & 0xFF) / most,
                static_cast<float>(code >> 8 & 0xFF) / most,
                static_cast<float>(code & 0xFF) / most};
    }

    friend constexpr Rgb operator+(const Rgb& left, const Rgb& right)
    {
        return {left.r + right.r, left.g + right.g, left.b + right.b};
    }
    friend constexpr Rgb operator*(const Rgb& left, const Rgb& right)
    {
        return {left.r * right.r, left.g * right.g, left.b * right.b};
    }
    friend constexpr Rgb operator*(const Rgb& colour, float factor)
    {
        return {colour.r * factor, colour.g * factor, colour.b * factor};
    }

    [[nodiscard]] Rgb clamped() const
    {
        return {std::clamp(r, 0.F, 1.F), std::clamp(g, 0.F, 1.F), std::clamp(b, 0.F, 1.F)};
    }
};

/// `a` at 0, `b` at 1.
constexpr Rgb mix(const Rgb& a, const Rgb& b, float t)
{
    return a * (1 - t) + b * t;
}

/// Adds light as on film: bright colours saturate softly.
inline Rgb screen(const Rgb& a, const Rgb& light)
{
    const Rgb base = a.clamped();
    const Rgb top = light.clamped();
    return {1 - (1 - base.r) * (1 - top.r), 1 - (1 - base.g) * (1 - top.g),
            1 - (1 - base.b) * (1 - top.b)};
}

/// 0 below `from`, 1 above `to`, with smooth ends.
inline float smoothStep(float from, float to, float x)
{
    const float t = std::clamp((x - from) / (to - from), 0.F, 1.F);
    return t * t * (3 - 2 * t);
}

}  // namespace nivor
