/// What a drawn landscape shows: the hour, the season and the country.
#pragma once

#include <cstdint>

namespace nivor {

enum class Hour : std::uint8_t {
    Dawn,
    Morning,
    Noon,
    Overcast,
    Storm,
    Golden,
    Sunset,
    Dusk,
    Night,
    Aurora,
};
enum class Season : std::uint8_t { Spring, Summer, Autumn, Winter };
enum class Country : std::uint8_t { Alps, Hills, Sea, Dunes, Pines };

struct Scene {
    /// How many scenes there are, all different.
    static constexpr unsigned count = 42;

    unsigned number = 0;
    Hour hour{};
    Season season{};
    Country country{};

    /// The scene of that number, from 0 to `count` - 1; the year goes by from first to last.
    static Scene of(unsigned number);
};

}  // namespace nivor
