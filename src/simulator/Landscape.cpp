#include "simulator/Landscape.h"

#include <algorithm>
#include <cmath>

namespace nivor {

namespace {

/// Sun and moon keep to the middle half, left or right of the centre.
float sunPlace(const ValueNoise& noise)
{
    return 0.45F + 1.1F * noise.cell(3, 7);
}

}  // namespace

Landscape::Landscape(const Scene& scene)
    : scene_(scene)
    , mood_(Mood::of(scene.hour))
    , layout_(SceneLayout::of(scene))
    , noise_(scene.number * 131 + 5)
    , sky_(scene, layout_.horizon, sunPlace(noise_))
{
    std::uint32_t seed = scene.number * 61 + 1;
    const auto raise = [&](const std::vector<Ridge::Form>& forms, std::vector<Ridge>& ridges) {
        for (const Ridge::Form& form : forms) {
            ridges.emplace_back(form, mood_, seed, sky_.sunX());
            seed += 7919;
        }
    };
    raise(layout_.land, land_);
    raise(layout_.foreground, foreground_);
}

QImage Landscape::paint(int height)
{
    height_ = height;
    width_ = 2 * height;
    sky_.prepare(width_, height_);
    for (Ridge& ridge : land_)
        ridge.prepare(width_, height_);
    for (Ridge& ridge : foreground_)
        ridge.prepare(width_, height_);

    Canvas canvas(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    paintSkyAndLand(canvas);
    paintWater(canvas);
    paintForeground(canvas);
    return develop(canvas);
}

float Landscape::yOf(int row) const
{
    return (static_cast<float>(row) + 0.5F) / static_cast<float>(height_);
}

std::size_t Landscape::indexOf(int column, int row) const
{
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(width_)
        + static_cast<std::size_t>(column);
}

/// From near to far, so that nothing is calculated that something else hides.
Rgb Landscape::skyOrLand(int column, int row) const
{
    const float x = yOf(column);
    const float y = yOf(row);
    Rgb colour;
    float visible = 1;
    for (auto ridge = land_.rbegin(); ridge != land_.rend() && visible > 0.01F; ++ridge) {
        const float coverage = ridge->coverage(column, y);
        if (coverage > 0)
            colour = colour + ridge->colour(column, x, y) * (visible * coverage);
        visible *= 1 - coverage;
    }
    return visible > 0.01F ? colour + sky_.at(x, y).clamped() * visible : colour;
}

void Landscape::paintSkyAndLand(Canvas& canvas) const
{
    const int rows =
        std::min(height_, static_cast<int>(layout_.waterline * static_cast<float>(height_)));
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < width_; ++column)
            canvas[indexOf(column, row)] = skyOrLand(column, row);
    }
}

/// The water mirrors what is above it, bent by ripples that grow towards the viewer.
void Landscape::paintWater(Canvas& canvas) const
{
    const int firstRow = static_cast<int>(layout_.waterline * static_cast<float>(height_));
    const bool isSea = scene_.country == Country::Sea;
    for (int row = firstRow; row < height_; ++row) {
        const float y = yOf(row);
        const float depth = y - layout_.waterline;
        const float nearness = 1 / (depth + 0.03F);
        for (int column = 0; column < width_; ++column) {
            const float x = yOf(column);
            const float wave =
                noise_.fractal((x - 1) * nearness * 1.6F + 30, nearness * 9, 3) - 0.5F;
            const float mirrored = layout_.waterline - depth * (isSea ? 1.25F : 1.0F)
                + wave * (isSea ? 0.16F : 0.05F) * std::min(1.F, depth * 9 + 0.15F);
            const float limit = std::clamp(mirrored, 0.F, layout_.waterline - 0.004F);
            const int source = std::clamp(static_cast<int>(limit * static_cast<float>(height_)), 0,
                                          std::max(firstRow - 1, 0));
            const float deepening = 0.90F - 0.38F * smoothStep(0, 0.45F, depth);
            Rgb colour = mix(canvas[indexOf(column, source)], mood_.zenith * 0.75F, 0.16F)
                * (deepening + wave * (isSea ? 0.35F : 0.16F));
            if (mood_.sunHeight > 0) {
                // The sun's road on the water.
                const float aside = std::abs(x - sky_.sunX()) / (0.035F + depth * 0.42F);
                const float glitter = std::exp(-aside * aside)
                    * smoothStep(0.02F, 0.22F, wave + 0.10F) * (isSea ? 0.75F : 0.45F);
                colour = screen(colour, mood_.sun * glitter);
            }
            canvas[indexOf(column, row)] = colour;
        }
    }
}

void Landscape::paintForeground(Canvas& canvas) const
{
    for (const Ridge& ridge : foreground_) {
        for (int row = 0; row < height_; ++row) {
            const float y = yOf(row);
            for (int column = 0; column < width_; ++column) {
                const float coverage = ridge.coverage(column, y);
                if (coverage <= 0)
                    continue;
                Rgb& pixel = canvas[indexOf(column, row)];
                pixel = mix(pixel, ridge.colour(column, yOf(column), y), coverage);
            }
        }
    }
}

QImage Landscape::develop(const Canvas& canvas) const
{
    QImage image(width_, height_, QImage::Format_RGB888);
    for (int row = 0; row < height_; ++row) {
        uchar* out = image.scanLine(row);
        for (int column = 0; column < width_; ++column) {
            const Rgb pixel = canvas[indexOf(column, row)].clamped();
            // Half a step of noise keeps smooth skies from showing bands.
            const float dither = noise_.cell(column, row);
            for (const float part : {pixel.r, pixel.g, pixel.b})
                *out++ = static_cast<uchar>(std::min(part * 255 + dither, 255.F));
        }
    }
    return image;
}

}  // namespace nivor
