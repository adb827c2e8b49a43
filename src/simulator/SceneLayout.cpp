#include "simulator/SceneLayout.h"

#include <utility>

namespace nivor {

namespace {

/// Builds the layout of one scene up.
struct Planner {
    const Scene& scene;
    SceneLayout layout{};

    void plan();
    void addAlps();
    void addHills();
    void addSea();
    void addDunes();
    void addPines();
    void addRidge(const Ridge::Form& form) { layout.land.push_back(form); }
    void addForeground(const Ridge::Form& form) { layout.foreground.push_back(form); }
    [[nodiscard]] Rgb meadow() const;
    [[nodiscard]] Rgb forest() const;
};

void Planner::plan()
{
    switch (scene.country) {
    case Country::Alps:
        addAlps();
        break;
    case Country::Hills:
        addHills();
        break;
    case Country::Sea:
        addSea();
        break;
    case Country::Dunes:
        addDunes();
        break;
    case Country::Pines:
        addPines();
        break;
    }
}

Rgb Planner::meadow() const
{
    switch (scene.season) {
    case Season::Spring:
        return Rgb::hex(0x9CC25A);
    case Season::Summer:
        return Rgb::hex(0x7DA64A);
    case Season::Autumn:
        return Rgb::hex(0xD08A3C);
    case Season::Winter:
        break;
    }
    return Rgb::hex(0xE4ECF6);
}

Rgb Planner::forest() const
{
    switch (scene.season) {
    case Season::Spring:
        return Rgb::hex(0x4F7D46);
    case Season::Summer:
        return Rgb::hex(0x35623F);
    case Season::Autumn:
        return Rgb::hex(0x9A5A2C);
    case Season::Winter:
        break;
    }
    return Rgb::hex(0x5A6B74);
}

void Planner::addAlps()
{
    const bool isWinter = scene.season == Season::Winter;
    const float snow = isWinter ? 0.32F : scene.season == Season::Summer ? 0.045F : 0.10F;
    const Rgb rock = isWinter ? Rgb::hex(0x77839A) : Rgb::hex(0x7C7F8C);
    const float trees = isWinter ? 0.1F : 0.F;
    layout.waterline = 0.74F;
    addRidge({.kind = Ridge::Kind::Mountain,
              .base = 0.66F,
              .amplitude = 0.40F,
              .frequency = 1.1F,
              .land = rock,
              .haze = 0.52F,
              .mist = 0.5F,
              .snow = snow});
    addRidge({.kind = Ridge::Kind::Mountain,
              .base = 0.71F,
              .amplitude = 0.27F,
              .frequency = 1.5F,
              .land = rock * 0.86F,
              .haze = 0.22F,
              .mist = 0.55F,
              .snow = snow * 0.6F});
    addRidge({.base = 0.725F,
              .amplitude = 0.06F,
              .frequency = 1.8F,
              .land = forest(),
              .haze = 0.16F,
              .mist = 0.25F,
              .snow = trees,
              .trees = 0.028F});
    addRidge({.base = 0.750F,
              .amplitude = 0.018F,
              .frequency = 2.2F,
              .land = meadow() * 0.85F,
              .haze = 0.06F,
              .snow = trees,
              .trees = 0.016F});
    addForeground({.base = 1.05F,
                   .amplitude = 0.12F,
                   .frequency = 0.9F,
                   .land = forest() * 0.42F,
                   .snow = trees,
                   .trees = 0.17F,
                   .clearings = 0.52F});
}

void Planner::addHills()
{
    const bool isWinter = scene.season == Season::Winter;
    const Rgb near = meadow();
    const Rgb other = isWinter ? Rgb::hex(0xD3DFEE) : mix(meadow(), Rgb::hex(0xD8C060), 0.45F);
    addRidge({.kind = Ridge::Kind::Mountain,
              .base = 0.64F,
              .amplitude = 0.16F,
              .frequency = 1.2F,
              .land = Rgb::hex(0x6F7F92),
              .haze = 0.70F,
              .snow = isWinter ? 0.2F : 0.F});
    addRidge({.base = 0.66F,
              .amplitude = 0.09F,
              .frequency = 1.3F,
              .land = forest(),
              .haze = 0.55F,
              .mist = 0.35F,
              .trees = 0.012F});
    addRidge({.base = 0.72F,
              .amplitude = 0.10F,
              .frequency = 1.0F,
              .land = other,
              .haze = 0.36F,
              .mist = 0.35F,
              .trees = 0.014F});
    addRidge({.base = 0.79F,
              .amplitude = 0.11F,
              .frequency = 0.9F,
              .land = near,
              .haze = 0.20F,
              .mist = 0.30F,
              .trees = 0.022F});
    addRidge({.base = 0.88F,
              .amplitude = 0.12F,
              .frequency = 0.8F,
              .land = other * 0.95F,
              .haze = 0.08F,
              .mist = 0.20F,
              .snow = isWinter ? 0.1F : 0.F,
              .trees = 0.035F});
    addRidge({.base = 1.02F, .amplitude = 0.15F, .frequency = 0.7F, .land = near * 0.82F});
}

void Planner::addSea()
{
    const Rgb rock = scene.season == Season::Winter ? Rgb::hex(0x8C98A8) : Rgb::hex(0x6D6A5E);
    layout.horizon = 0.58F;
    layout.waterline = 0.58F;
    addRidge({.kind = Ridge::Kind::Mountain,
              .base = 0.600F,
              .amplitude = 0.075F,
              .frequency = 0.8F,
              .land = rock,
              .haze = 0.66F,
              .snow = scene.season == Season::Winter ? 0.05F : 0.F});
    addRidge({.kind = Ridge::Kind::Mountain,
              .base = 0.602F,
              .amplitude = 0.048F,
              .frequency = 1.4F,
              .land = mix(rock, forest(), 0.5F),
              .haze = 0.34F});
    addForeground({.base = 1.07F,
                   .amplitude = 0.17F,
                   .frequency = 0.8F,
                   .land = mix(meadow(), Rgb::hex(0xB9A67A), 0.5F) * 0.62F});
}

void Planner::addDunes()
{
    const Rgb sand = scene.season == Season::Autumn ? Rgb::hex(0xDE9A5A) : Rgb::hex(0xE3B878);
    const auto dune = [&](float base, float amplitude, float frequency, float haze, float shade) {
        addRidge({.kind = Ridge::Kind::Dune,
                  .base = base,
                  .amplitude = amplitude,
                  .frequency = frequency,
                  .land = sand * shade,
                  .haze = haze,
                  .mist = haze > 0.2F ? 0.3F : 0.1F});
    };
    addRidge({.kind = Ridge::Kind::Mountain,
              .base = 0.67F,
              .amplitude = 0.10F,
              .frequency = 1.4F,
              .land = Rgb::hex(0x9A6A58),
              .haze = 0.62F});
    dune(0.70F, 0.09F, 1.6F, 0.42F, 1.02F);
    dune(0.77F, 0.12F, 1.2F, 0.24F, 1.04F);
    dune(0.88F, 0.16F, 0.9F, 0.10F, 1.02F);
    dune(1.06F, 0.22F, 0.7F, 0.00F, 0.92F);
}

void Planner::addPines()
{
    const bool isWinter = scene.season == Season::Winter;
    const Rgb needles = mix(forest(), Rgb::hex(0x2F4F45), isWinter ? 0.6F : 0.45F);
    addRidge({.kind = Ridge::Kind::Mountain,
              .base = 0.60F,
              .amplitude = 0.24F,
              .frequency = 0.9F,
              .land = Rgb::hex(0x75808E),
              .haze = 0.74F,
              .mist = 0.6F,
              .snow = isWinter ? 0.25F : 0.06F});
    constexpr int rows = 6;
    for (int row = 0; row < rows; ++row) {
        const float near = static_cast<float>(row) / (rows - 1);
        addRidge({.kind = Ridge::Kind::Pines,
                  .base = 0.60F + 0.46F * near,
                  .amplitude = 0.10F + 0.05F * near,
                  .frequency = 1.5F - 0.7F * near,
                  .land = needles * (0.85F - 0.42F * near),
                  .haze = 0.70F * (1 - near) + 0.02F,
                  .mist = 0.85F * (1 - 0.6F * near),
                  .trees = 0.022F + 0.13F * near * near});
    }
}

}  // namespace

SceneLayout SceneLayout::of(const Scene& scene)
{
    Planner planner{.scene = scene};
    planner.plan();
    return std::move(planner.layout);
}

}  // namespace nivor
