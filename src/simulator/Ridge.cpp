#include "simulator/Ridge.h"

#include <algorithm>
#include <cmath>

namespace nivor {

Ridge::Ridge(const Form& form, const Mood& mood, std::uint32_t seed, float sunX)
    : form_(form)
    , mood_(mood)
    , noise_(seed)
    , sunX_(sunX)
{
}

void Ridge::prepare(int width, int height)
{
    pixel_ = 1 / static_cast<float>(height);
    crests_.clear();
    treeTops_.clear();
    for (int column = 0; column < width; ++column) {
        const float x = (static_cast<float>(column) + 0.5F) * pixel_;
        crests_.push_back(crest(x));
        treeTops_.push_back(form_.trees > 0 ? treeTop(x) : 0);
    }
}

/// 1 where the sun stands to the right, -1 to the left; it turns softly below the sun.
float Ridge::towardsSun(float x) const
{
    return std::clamp(2.5F * (sunX_ - x), -1.F, 1.F);
}

float Ridge::crest(float x) const
{
    const float along = x * form_.frequency + 50;
    switch (form_.kind) {
    case Kind::Mountain:
        return form_.base - form_.amplitude * (1.55F * noise_.ridged(along, 7) - 0.40F);
    case Kind::Dune: {
        // One long and one short side each.
        const float wave = noise_.fractal(along, 2);
        const float ripple = std::abs(2 * noise_.at(along * 0.9F + 3) - 1);
        return form_.base - form_.amplitude * (0.5F * wave + 0.7F * (1 - ripple));
    }
    case Kind::Hill:
    case Kind::Pines:
        break;
    }
    return form_.base - form_.amplitude * (2.4F * noise_.fractal(along, 3) - 0.7F);
}

/// Conifers, each with a jagged outline, side by side and a second row between them.
float Ridge::treeTop(float x) const
{
    const float width = form_.trees * 0.42F;
    float top = 0;
    for (int row = 0; row < 2; ++row) {
        const float place = x / width + 0.5F * static_cast<float>(row) + 100;
        const int first = static_cast<int>(std::floor(place));
        for (int cell = first - 1; cell <= first + 1; ++cell) {
            const int key = cell * 2 + row;
            if (noise_.fractal(static_cast<float>(cell) * 0.11F, 2) < form_.clearings)
                continue;  // a clearing
            const float centre = static_cast<float>(cell) + 0.25F + 0.5F * noise_.cell(key, 1);
            const float height = form_.trees * (0.45F + 0.55F * noise_.cell(key, 2));
            const float spread = (0.42F + 0.25F * noise_.cell(key, 3)) * height / form_.trees;
            const float distance = std::abs(place - centre) / spread;
            if (distance >= 1)
                continue;
            const float branches = 0.10F * std::abs(std::sin(distance * 22 + noise_.cell(key, 4)));
            top = std::max(top, height * (1 - distance - branches * distance));
        }
    }
    return top;
}

float Ridge::coverage(int column, float y) const
{
    const auto index = static_cast<std::size_t>(column);
    const float edge = crests_[index] - treeTops_[index];
    return std::clamp((y - edge) / pixel_ + 0.5F, 0.F, 1.F);
}

Rgb Ridge::colour(int column, float x, float y) const
{
    const auto index = static_cast<std::size_t>(column);
    const float depth = y - crests_[index];
    Rgb land;
    const bool isTree = form_.kind == Kind::Pines || (form_.trees > 0 && depth < 0);
    if (isTree) {
        // Trees are dark, a little lighter where they stand loose.
        const float texture = noise_.fractal(x * 90, y * 60, 2);
        land = form_.land * (0.62F + 0.5F * texture);
        if (form_.snow > 0)
            land = mix(land, Rgb::hex(0xE6EEF8), 0.30F + 0.35F * smoothStep(0.4F, 0.8F, texture));
    } else {
        land = surface(x, depth);
    }
    const float below = smoothStep(-0.01F, 0.16F, depth + form_.trees * 0.5F);
    const float veil = std::min(form_.haze + form_.mist * below * (1 - form_.haze), 0.97F);
    return mix(land * mood_.light, mood_.haze, veil);
}

Rgb Ridge::surface(float x, float depth) const
{
    switch (form_.kind) {
    case Kind::Mountain:
        return mountain(x, depth);
    case Kind::Dune:
        return dune(x, depth);
    case Kind::Hill:
    case Kind::Pines:
        break;
    }
    return hill(x, depth);
}

/// Rock faces turn to the sun or away from it; snow lies near the crest.
Rgb Ridge::mountain(float x, float depth) const
{
    const float frequency = form_.frequency * 2.2F;
    const float lean = 0.55F * depth;
    constexpr float step = 0.012F;
    const float here = noise_.ridged((x + lean) * frequency, depth * frequency * 1.3F + 7, 5);
    const float next =
        noise_.ridged((x + step + lean) * frequency, depth * frequency * 1.3F + 7, 5);
    const float light = std::clamp(0.62F + (here - next) * 5.5F * towardsSun(x), 0.25F, 1.15F);
    const Rgb rock = form_.land * light;
    const float line = form_.snow * (0.45F + 1.1F * here);
    const float snow = smoothStep(line, line * 0.55F, depth) * (form_.snow > 0 ? 1.F : 0.F);
    return mix(rock, Rgb::hex(0xF4F8FF) * (0.55F + 0.48F * light), snow);
}

/// Meadows with a soft light and fields or flowers in patches.
Rgb Ridge::hill(float x, float depth) const
{
    const float patches = noise_.fractal(x * 5, depth * 26 + 3, 3);
    const float grain = noise_.fractal(x * 120, depth * 240, 2);
    const float crestLight = 0.20F * std::exp(-std::max(depth, 0.F) * 22);
    const float light = 0.74F + 0.42F * (patches - 0.5F) + 0.20F * (grain - 0.5F) + crestLight;
    return form_.land * light;
}

/// The sun's side is bright, the other lies in shadow, and the wind has combed both.
Rgb Ridge::dune(float x, float depth) const
{
    const float along = x * form_.frequency + 50;
    const float slope = noise_.at((along + 0.04F) * 0.9F + 3) - noise_.at(along * 0.9F + 3);
    const float bend = noise_.fractal(x * 3, depth * 8, 2);
    const float side = smoothStep(-0.02F, 0.02F, slope * towardsSun(x) + 0.03F * (bend - 0.5F));
    const float ripples =
        std::sin((depth * 210 + x * 34 + bend * 22)) * std::clamp(depth * 3, 0.F, 1.F);
    return form_.land * (0.62F + 0.42F * side + 0.05F * ripples);
}

}  // namespace nivor
