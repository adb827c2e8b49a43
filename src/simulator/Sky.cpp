#include "simulator/Sky.h"

#include <algorithm>
#include <cmath>

namespace nivor {

Sky::Sky(const Scene& scene, float horizon, float sunX)
    : mood_(Mood::of(scene.hour))
    , hour_(scene.hour)
    , noise_(scene.number * 977 + 11)
    , horizon_(horizon)
    , sunX_(sunX)
    , sunY_(horizon * (1 - mood_.sunHeight))
{
}

void Sky::prepare(int width, int height)
{
    // Clouds are soft: every third pixel is enough, and the rest lies between.
    constexpr float pixelsPerCell = 3;
    pixel_ = 1 / static_cast<float>(height);
    gridStep_ = pixelsPerCell * pixel_;
    columns_ = static_cast<int>(static_cast<float>(width) / pixelsPerCell) + 3;
    rows_ = static_cast<int>(horizon_ / gridStep_) + 3;
    clouds_.clear();
    clouds_.reserve(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_));
    for (int row = 0; row < rows_; ++row) {
        for (int column = 0; column < columns_; ++column)
            clouds_.push_back(cloudFrom(static_cast<float>(column) * gridStep_,
                                        static_cast<float>(row) * gridStep_));
    }
}

/// Clouds float on a plane overhead, so they grow flatter and denser towards the horizon.
Sky::Cloud Sky::cloudFrom(float x, float y) const
{
    const float above = std::max(horizon_ - y, 0.F) / horizon_;
    const float distance = 0.42F / (above + 0.17F);
    const float planeX = (x - 1) * distance * 1.35F + 40;
    const float planeY = distance * 2.6F + 40;
    const float coarse = noise_.fractal(planeX * 1.1F, planeY, 5);
    const float threshold = 0.74F - 0.46F * mood_.cloudCover;
    const float density = smoothStep(threshold, threshold + 0.22F, coarse);
    const float fading = smoothStep(0, 0.10F, above);

    // Lit where the cloud thins out towards the sun.
    const float towardsSun = 0.10F * std::clamp(3 * (sunX_ - x), -1.F, 1.F);
    const float shade = noise_.fractal((planeX + towardsSun) * 1.1F, planeY - 0.14F, 3);
    return {density * fading, std::clamp(0.62F + (coarse - shade) * 2.6F, 0.F, 1.F)};
}

Sky::Cloud Sky::cloudAt(float x, float y) const
{
    const float gridX = std::clamp(x / gridStep_, 0.F, static_cast<float>(columns_ - 2));
    const float gridY = std::clamp(y / gridStep_, 0.F, static_cast<float>(rows_ - 2));
    const int column = static_cast<int>(gridX);
    const int row = static_cast<int>(gridY);
    const float tx = gridX - static_cast<float>(column);
    const float ty = gridY - static_cast<float>(row);
    const int corner = row * columns_ + column;
    const auto* const top = &clouds_[static_cast<std::size_t>(corner)];
    const auto* const bottom = top + columns_;
    const auto between = [](const Cloud& a, const Cloud& b, float t) {
        return Cloud{a.density + (b.density - a.density) * t,
                     a.brightness + (b.brightness - a.brightness) * t};
    };
    return between(between(top[0], top[1], tx), between(bottom[0], bottom[1], tx), ty);
}

Rgb Sky::gradient(float y) const
{
    const float t = std::clamp(y / horizon_, 0.F, 1.F);
    constexpr float turn = 0.58F;
    return t < turn ? mix(mood_.zenith, mood_.middle, smoothStep(0, turn, t))
                    : mix(mood_.middle, mood_.horizon, smoothStep(turn, 1, t));
}

float Sky::star(float x, float y) const
{
    constexpr float cellsPerHeight = 46;
    const int column = static_cast<int>(x * cellsPerHeight);
    const int row = static_cast<int>(y * cellsPerHeight);
    const float chance = noise_.cell(column, row);
    if (chance < 0.86F)
        return 0;
    const float starX = (static_cast<float>(column) + 0.2F + 0.6F * noise_.cell(column, row + 999))
        / cellsPerHeight;
    const float starY =
        (static_cast<float>(row) + 0.2F + 0.6F * noise_.cell(column + 999, row)) / cellsPerHeight;
    const float radius = std::max(0.0011F, 0.55F * pixel_);
    const float distance = std::hypot(x - starX, y - starY) / radius;
    const float size = (chance - 0.86F) / 0.14F;
    return std::exp(-distance * distance) * (0.25F + 0.75F * size * size)
        * smoothStep(horizon_, horizon_ * 0.5F, y);
}

/// Curtains of light: a wavy lower edge from which rays rise and fade.
Rgb Sky::aurora(float x, float y) const
{
    Rgb light;
    for (int curtain = 0; curtain < 3; ++curtain) {
        const float shift = static_cast<float>(curtain) * 13.7F;
        const float edge = horizon_ * (0.52F + 0.12F * static_cast<float>(curtain))
            - 0.34F * noise_.fractal(x * 1.1F + shift, 3) + 0.02F;
        const float height = edge - y;
        const float fall = height > 0 ? std::exp(-height * 6.5F) : std::exp(height * 55);
        const float rays = 0.35F + 0.65F * noise_.fractal(x * 26 + shift, 2);
        const float sweep = smoothStep(0.30F, 0.62F, noise_.at(x * 1.3F + shift * 2));
        const float strength = fall * rays * sweep * 0.85F;
        const Rgb colour =
            mix(Rgb::hex(0x4CFFA0), Rgb::hex(0x8A5CFF), smoothStep(0.02F, 0.26F, height));
        light = light + colour * strength;
    }
    return light;
}

Rgb Sky::at(float x, float y) const
{
    Rgb colour = gradient(y);
    if (mood_.stars) {
        const float brightness = star(x, y);
        colour = screen(colour, Rgb{1, 1, 0.95F} * brightness);
    }
    if (hour_ == Hour::Aurora)
        colour = screen(colour, aurora(x, y));

    const float distance = std::hypot(x - sunX_, y - sunY_);
    const bool isNight = hour_ == Hour::Night;
    if (mood_.sunHeight > 0) {
        const float wide = (isNight ? 0.22F : 0.55F) * std::exp(-distance * 3.4F);
        const float narrow = (isNight ? 0.30F : 0.65F) * std::exp(-distance * distance * 70);
        colour = screen(colour, mood_.sun * (wide + narrow));
        const float radius = isNight ? 0.034F : 0.030F;
        const float disc = smoothStep(radius + pixel_, radius - pixel_, distance);
        colour = mix(colour, mix(mood_.sun, Rgb{1, 1, 1}, isNight ? 0.2F : 0.5F), disc);
    }

    const Cloud cloud = cloudAt(x, y);
    const float glow = mood_.sunHeight > 0 ? 0.45F * std::exp(-distance * 2.6F) : 0;
    const Rgb lit =
        screen(mix(mood_.cloudShade, mood_.cloudLit, cloud.brightness), mood_.sun * glow);
    return mix(colour, lit, 0.92F * cloud.density);
}

}  // namespace nivor
