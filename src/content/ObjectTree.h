/// The folder structure of a listing.
#pragma once

#include "content/ContentListing.h"

#include <QHash>
#include <QString>

#include <cstddef>
#include <vector>

namespace nivor {

/// Where each object of a flat list stands, found in a time that grows with their number alone.
///
/// Objects whose parent is missing, that contain themselves or that lie more than `deepestLevel`
/// folders down stand at the top, so none is ever lost. Reads the objects when it is made and
/// holds on to them; names changed afterwards are not noticed. Immutable, so any thread may read.
class ObjectTree {
public:
    static constexpr int deepestLevel = 64;

    /// An object with its place.
    struct Node {
        std::shared_ptr<ObjectInfoData> object;
        QString name;            ///< the camera's, without terminator
        std::size_t parent = 0;  ///< the index of the folder that it lies in, unless `depth` is 0
        std::size_t depth = 0;   ///< folders above it
    };

    explicit ObjectTree(const ObjectList& objects);

    /// Folders before their contents, siblings in the order of the list.
    [[nodiscard]] const std::vector<Node>& nodes() const& { return nodes_; }
    const std::vector<Node>& nodes() const&& = delete;  // they go with the tree

    /// The names that lead to the object at `index`, joined by '/', such as
    /// "DCIM/100NIVOR/IMG_0001.JPG". Made anew at each call: together, the paths of long names
    /// can take a thousand times the memory of the objects.
    [[nodiscard]] QString path(std::size_t index) const;

    /// How many of `nodes()` directly behind the one at `index` lie below it, at any depth.
    [[nodiscard]] std::size_t descendantCount(std::size_t index) const;

private:
    class Builder;

    std::vector<Node> nodes_;
};

}  // namespace nivor
