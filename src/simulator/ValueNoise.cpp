#include "simulator/ValueNoise.h"

#include <cmath>

namespace nivor {

namespace {

/// `std::floor` is a call into the library on plain x86-64, and this runs for every pixel.
int floorOf(float x)
{
    const int truncated = static_cast<int>(x);
    return truncated - (x < static_cast<float>(truncated) ? 1 : 0);
}

float between(float a, float b, float t)
{
    return a + (b - a) * t;
}

float fade(float t)
{
    return t * t * t * (t * (t * 6 - 15) + 10);
}

}  // namespace

float ValueNoise::cell(int x, int y) const
{
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x8DA6B343U
        ^ static_cast<std::uint32_t>(y) * 0xD8163841U ^ seed_ * 0xCB1AB31FU;
    h = (h ^ h >> 15) * 0x2C1B3C6DU;
    h = (h ^ h >> 12) * 0x297A2D39U;
    h ^= h >> 15;
    constexpr float most = 1U << 24;
    return static_cast<float>(h >> 8) / most;
}

float ValueNoise::at(float x, float y) const
{
    const int column = floorOf(x);
    const int row = floorOf(y);
    const float tx = fade(x - static_cast<float>(column));
    const float ty = fade(y - static_cast<float>(row));
    const float top = between(cell(column, row), cell(column + 1, row), tx);
    const float bottom = between(cell(column, row + 1), cell(column + 1, row + 1), tx);
    return between(top, bottom, ty);
}

float ValueNoise::fractal(float x, float y, int octaves) const
{
    float sum = 0;
    float weight = 0.5F;
    float total = 0;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += weight * at(x, y);
        total += weight;
        weight *= 0.5F;
        // Not quite doubled and shifted, so that the grids of the octaves don't line up.
        x = x * 2.03F + 17.3F;
        y = y * 2.03F + 9.1F;
    }
    return sum / total;
}

float ValueNoise::ridged(float x, float y, int octaves) const
{
    float sum = 0;
    float weight = 0.5F;
    float total = 0;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += weight * (1 - std::abs(2 * at(x, y) - 1));
        total += weight;
        weight *= 0.45F;
        x = x * 2.11F + 31.7F;
        y = y * 2.11F + 5.9F;
    }
    return sum / total;
}

}  // namespace nivor
