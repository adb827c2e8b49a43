/// Shows a delete run on the terminal.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ProgressLine.h"
#include "content/DeleteRunObserver.h"

namespace nivor {

/// On a terminal one line that follows the run; elsewhere one line per file. Failed files are
/// named on either.
class DeleteDisplay final : public DeleteRunObserver {
public:
    /// `isQuiet`: no line for a file that was deleted.
    DeleteDisplay(CliEnvironment& environment, bool isQuiet);

    void fileWillBeDeleted(const ObjectInfoData& object, std::size_t number,
                           std::size_t total) override;
    bool isStopRequested() override;
    void fileDidFinish(const DeletedFile& file) override;

private:
    CliEnvironment& environment_;
    const bool isQuiet_;
    ProgressLine line_;
};

}  // namespace nivor
