/// What went wrong in a run, for its alert.
#pragma once

#include <QStringList>

namespace nivor {

struct CopyResult;
struct DeleteResult;

/// A line per file that failed, with the reason, in the order of the run.
QStringList failureLines(const CopyResult& result);
QStringList failureLines(const DeleteResult& result);

}  // namespace nivor
