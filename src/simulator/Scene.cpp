#include "simulator/Scene.h"

#include <array>
#include <cassert>

namespace nivor {

namespace {

struct View {
    Hour hour;
    Country country;
};

constexpr std::array<View, Scene::count> views{{
    // Spring
    {Hour::Dawn, Country::Alps},
    {Hour::Morning, Country::Hills},
    {Hour::Golden, Country::Sea},
    {Hour::Noon, Country::Alps},
    {Hour::Overcast, Country::Pines},
    {Hour::Sunset, Country::Hills},
    {Hour::Dusk, Country::Sea},
    {Hour::Night, Country::Pines},
    {Hour::Storm, Country::Hills},
    {Hour::Golden, Country::Alps},
    // Summer
    {Hour::Noon, Country::Sea},
    {Hour::Dawn, Country::Dunes},
    {Hour::Morning, Country::Alps},
    {Hour::Golden, Country::Hills},
    {Hour::Sunset, Country::Sea},
    {Hour::Noon, Country::Dunes},
    {Hour::Dusk, Country::Alps},
    {Hour::Night, Country::Sea},
    {Hour::Morning, Country::Pines},
    {Hour::Sunset, Country::Dunes},
    // Autumn
    {Hour::Golden, Country::Pines},
    {Hour::Morning, Country::Alps},
    {Hour::Dawn, Country::Hills},
    {Hour::Storm, Country::Sea},
    {Hour::Noon, Country::Hills},
    {Hour::Sunset, Country::Alps},
    {Hour::Overcast, Country::Hills},
    {Hour::Dusk, Country::Pines},
    {Hour::Golden, Country::Dunes},
    {Hour::Night, Country::Alps},
    // Winter
    {Hour::Overcast, Country::Alps},
    {Hour::Dawn, Country::Pines},
    {Hour::Noon, Country::Hills},
    {Hour::Aurora, Country::Alps},
    {Hour::Golden, Country::Hills},
    {Hour::Morning, Country::Sea},
    {Hour::Aurora, Country::Sea},
    {Hour::Dusk, Country::Hills},
    {Hour::Aurora, Country::Pines},
    {Hour::Sunset, Country::Sea},
    // The films' first pictures
    {Hour::Dawn, Country::Sea},
    {Hour::Golden, Country::Alps},
}};

}  // namespace

Scene Scene::of(unsigned number)
{
    assert(number < count);
    constexpr unsigned viewsPerSeason = 10;
    const View& view = views[number];
    return {.number = number,
            .hour = view.hour,
            .season = static_cast<Season>(number / viewsPerSeason % 4),
            .country = view.country};
}

}  // namespace nivor
