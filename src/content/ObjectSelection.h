/// Picks the files of a listing that a user's words mean.
#pragma once

#include "content/ContentListing.h"
#include "content/ObjectTree.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace nivor {

/// The files that a list of words selects.
struct ObjectSelection {
    ObjectList files;         ///< each once, in the order of the words and then of the tree
    QStringList unmatched;    ///< words that nothing matches
    QStringList emptyHanded;  ///< words that match folders without a file in them

    /// Every word has given a file.
    [[nodiscard]] bool isComplete() const { return unmatched.isEmpty() && emptyHanded.isEmpty(); }
};

/// Selects by name, path, handle or pattern.
///
/// A word without '/' is held against the names, one with '/' against the paths. It means the
/// objects that are called exactly that; if there are none, those whose name is only composed
/// otherwise of the same characters; then the object with that handle (decimal, or hexadecimal
/// after "0x"); if there is none either, those that match it as a pattern (`FileGlob`). A folder
/// stands for all the files in it, at any depth.
ObjectSelection selectObjects(const ObjectTree& tree, const QStringList& words);

}  // namespace nivor
