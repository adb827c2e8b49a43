/// What the commands that take names share.
#pragma once

#include "cli/CliEnvironment.h"
#include "content/ContentListing.h"
#include "content/ObjectSelection.h"

#include <nlohmann/json_fwd.hpp>

#include <QStringList>

namespace nivor {

class ObjectPaths;

/// The files that `words` mean, or every file when there are none. Complains about each word that
/// gives no file.
ObjectSelection selectForCommand(CliEnvironment& environment, const ContentListing& listing,
                                 const QStringList& words);

/// The words that gave no file, as JSON.
nlohmann::json unmatchedWords(const ObjectSelection& selection);

/// Handle, name and path of an object, as JSON.
nlohmann::json objectReference(const ObjectInfoData& object, const ObjectPaths& paths);

}  // namespace nivor
