/// One range of mountains, hills, dunes or trees in a drawn landscape.
#pragma once

#include "simulator/Mood.h"
#include "simulator/Rgb.h"
#include "simulator/ValueNoise.h"

#include <cstdint>
#include <vector>

namespace nivor {

/// Places are measured in picture heights from the top left corner. Ranges are painted from the
/// farthest to the nearest, each over the last.
class Ridge {
public:
    enum class Kind : std::uint8_t { Mountain, Hill, Dune, Pines };

    struct Form {
        Kind kind = Kind::Hill;
        float base = 0.5F;       ///< where its feet stand
        float amplitude = 0.1F;  ///< how far it rises
        float frequency = 1;     ///< crests to a picture height
        Rgb land{};
        float haze = 0;           ///< 0 = near and clear, 1 = lost in the distance
        float mist = 0;           ///< how much haze lies at its feet
        float snow = 0;           ///< how far snow reaches down from the crest
        float trees = 0;          ///< height of the trees on it
        float clearings = 0.36F;  ///< share of its length without trees, roughly
    };

    Ridge(const Form& form, const Mood& mood, std::uint32_t seed, float sunX);

    /// Calculates the crest for pictures of these extents; call it before the rest.
    void prepare(int width, int height);

    /// How much of the pixel the range covers, from 0 to 1.
    [[nodiscard]] float coverage(int column, float y) const;

    [[nodiscard]] Rgb colour(int column, float x, float y) const;

private:
    [[nodiscard]] float towardsSun(float x) const;
    [[nodiscard]] float crest(float x) const;
    [[nodiscard]] float treeTop(float x) const;
    [[nodiscard]] Rgb surface(float x, float depth) const;
    [[nodiscard]] Rgb mountain(float x, float depth) const;
    [[nodiscard]] Rgb hill(float x, float depth) const;
    [[nodiscard]] Rgb dune(float x, float depth) const;

    const Form form_;
    const Mood& mood_;
    const ValueNoise noise_;
    const float sunX_;
    float pixel_ = 0;
    std::vector<float> crests_;    // of the ground, by column
    std::vector<float> treeTops_;  // above the ground
};

}  // namespace nivor
