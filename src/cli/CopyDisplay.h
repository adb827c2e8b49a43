/// Shows a copy run on the terminal.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ProgressLine.h"
#include "content/CopyRunObserver.h"
#include "content/TransferRate.h"

#include <QString>

namespace nivor {

class ObjectPaths;

/// On a terminal one line that follows the copy; elsewhere one line per file. Failed files are
/// named on either.
class CopyDisplay final : public CopyRunObserver {
public:
    /// `paths` must outlive the display. `isQuiet`: no line for a file that went well. `verb`:
    /// what stands before the name on the terminal's line, such as "Comparing "; may be empty.
    CopyDisplay(CliEnvironment& environment, const ObjectPaths& paths, bool isQuiet,
                QString verb = {});

    void copyWillBegin(const CopyProgress& progress) override;
    void copyIsUnderWay(const CopyProgress& progress) override;
    bool isStopRequested() override;
    void copyWasStopped(bool isConfirmed) override;
    void fileDidFinish(const CopiedFile& file, std::uint64_t number,
                       const CopyProgress& progress) override;

    /// Takes the line away; the run is over.
    void finish() { line_.clear(); }

private:
    [[nodiscard]] QString details(const CopyProgress& progress) const;

    CliEnvironment& environment_;
    const ObjectPaths& paths_;
    const bool isQuiet_;
    QString verb_;
    bool isStopping_ = false;
    ProgressLine line_;
    TransferRate rate_;
};

}  // namespace nivor
