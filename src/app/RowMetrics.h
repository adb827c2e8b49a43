/// How high the rows of the list are, and how large their thumbnails.
#pragma once

#include <QSizeF>

namespace nivor {

/// The height of a folder's row, and of a file's with the smallest thumbnails, in points.
inline constexpr double smallestRowHeight = 17.0;

/// What the largest thumbnails add to that.
inline constexpr double rowHeightRange = 33.0;

/// The height of a file's row. `slider`: its value, of which only the whole steps count;
/// `maximum`: its largest value.
constexpr double fileRowHeight(double slider, double maximum)
{
    return static_cast<int>(slider) / maximum * rowHeightRange + smallestRowHeight;
}

/// The height of any row.
constexpr double rowHeight(bool isFolder, double slider, double maximum)
{
    return isFolder ? smallestRowHeight : fileRowHeight(slider, maximum);
}

/// The frame of a thumbnail in a row of that height.
inline QSizeF thumbnailFrame(double height)
{
    return {2 * height, height};
}

/// Between the frame and the name.
inline constexpr double nameDistance = 5.0;

}  // namespace nivor
