/// Draws a panorama from nothing but a number.
#pragma once

#include "simulator/Ridge.h"
#include "simulator/Scene.h"
#include "simulator/SceneLayout.h"
#include "simulator/Sky.h"

#include <QImage>

#include <vector>

namespace nivor {

/// A scene with its sky, land and water. The same scene is the same picture at any size, with
/// only more or less detail. Not for use from several threads at a time.
class Landscape {
public:
    explicit Landscape(const Scene& scene);

    /// A picture of twice its height in width, in Format_RGB888. `height` in pixels.
    QImage paint(int height);

private:
    using Canvas = std::vector<Rgb>;

    void paintSkyAndLand(Canvas& canvas) const;
    void paintWater(Canvas& canvas) const;
    void paintForeground(Canvas& canvas) const;
    [[nodiscard]] Rgb skyOrLand(int column, int row) const;
    [[nodiscard]] QImage develop(const Canvas& canvas) const;
    [[nodiscard]] float yOf(int row) const;
    [[nodiscard]] std::size_t indexOf(int column, int row) const;

    const Scene scene_;
    const Mood& mood_;
    const SceneLayout layout_;
    const ValueNoise noise_;
    Sky sky_;
    std::vector<Ridge> land_;        // behind the water, from far to near
    std::vector<Ridge> foreground_;  // in front of it
    int width_ = 0;
    int height_ = 0;
};

}  // namespace nivor
