/// Shows a delete run on the terminal.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ProgressLine.h"
#include "content/DeleteRunObserver.h"

namespace nivor {

class ObjectPaths;

/// On a terminal one line that follows the run; elsewhere one line per file. Failed files are
/// named on either.
class DeleteDisplay final : public DeleteRunObserver {
public:
    /// `paths` must outlive the display. `isQuiet`: no line for a file that was deleted.
    DeleteDisplay(CliEnvironment& environment, const ObjectPaths& paths, bool isQuiet);

    void fileWillBeDeleted(const ObjectInfoData& object, std::size_t number,
                           std::size_t total) override;
    bool isStopRequested() override;
    void fileDidFinish(const DeletedFile& file) override;

private:
    CliEnvironment& environment_;
    const ObjectPaths& paths_;
    const bool isQuiet_;
    ProgressLine line_;
};

}  // namespace nivor
