/// Where the objects of a listing stand, in words.
#pragma once

#include "content/ObjectTree.h"

#include <QHash>
#include <QString>

#include <cstddef>

namespace nivor {

/// Reads the listing when it is made; what changes in it afterwards is not noticed.
class ObjectPaths {
public:
    explicit ObjectPaths(const ContentListing& listing);

    /// Names joined by '/', such as "DCIM/100NIVOR/IMG_0001.JPG"; of an object that is not in the
    /// listing only its name.
    [[nodiscard]] QString of(const ObjectInfoData& object) const;

    /// The same with nothing in it that could steer a terminal.
    [[nodiscard]] QString shown(const ObjectInfoData& object) const;

private:
    const ObjectTree tree_;
    QHash<const ObjectInfoData*, std::size_t> indexes_;  ///< among its nodes
};

}  // namespace nivor
