/// What the commands that take names share.
#pragma once

#include "cli/CliEnvironment.h"
#include "content/ContentListing.h"
#include "content/ObjectSelection.h"

#include <nlohmann/json_fwd.hpp>

#include <QStringList>

namespace nivor {

/// The files that `words` mean, or every file when there are none. Complains about each word that
/// gives no file.
ObjectSelection selectForCommand(CliEnvironment& environment, const ContentListing& listing,
                                 const QStringList& words);

/// The words that gave no file, as JSON.
nlohmann::json unmatchedWords(const ObjectSelection& selection);

/// Handle and name of an object, as JSON.
nlohmann::json objectReference(const ObjectInfoData& object);

}  // namespace nivor
