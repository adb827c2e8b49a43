#include "cli/CopyDisplay.h"

#include "cli/ObjectPaths.h"
#include "cli/Output.h"
#include "content/ByteCount.h"
#include "content/CopyProgress.h"
#include "content/CopyResult.h"
#include "content/VisibleName.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>
#include <utility>

namespace nivor {
namespace {

QString countOf(std::uint64_t number, const CopyProgress& progress)
{
    return QStringLiteral("%1 / %2").arg(number).arg(progress.numberOfTotalItems());
}

/// The container headers are counted as well, so the plain number would overshoot.
std::uint64_t copiedBytes(const CopyProgress& progress)
{
    return std::min(progress.copiedSize(), progress.totalSize());
}

}  // namespace

CopyDisplay::CopyDisplay(CliEnvironment& environment, const ObjectPaths& paths, bool isQuiet,
                         QString verb)
    : environment_(environment)
    , paths_(paths)
    , isQuiet_(isQuiet)
    , verb_(std::move(verb))
    , line_(environment)
{
}

void CopyDisplay::copyWillBegin(const CopyProgress& progress)
{
    rate_.record(environment_.now(), progress.copiedSize());
}

void CopyDisplay::copyIsUnderWay(const CopyProgress& progress)
{
    if (!line_.isDue())
        return;
    rate_.record(environment_.now(), progress.copiedSize());
    line_.show(verb_ + visibleName(progress.sourceFile()), details(progress));
}

bool CopyDisplay::isStopRequested()
{
    if (!isStopping_ && environment_.isInterrupted()) {
        isStopping_ = true;
        verb_ = QStringLiteral("Stopping… ");
        // The camera may take its time to confirm, and nothing is drawn until then.
        line_.showAtOnce(QStringLiteral("Stopping…"), {});
    }
    return isStopping_;
}

void CopyDisplay::copyWasStopped(bool isConfirmed)
{
    line_.clear();
    if (!isConfirmed) {
        complain(environment_,
                 "the camera did not confirm the stop; waiting for the end of this "
                 "file (Ctrl-C again ends the program at once)");
    }
}

void CopyDisplay::fileDidFinish(const CopiedFile& file, std::uint64_t number,
                                const CopyProgress& progress)
{
    if (!file.isCopied) {
        line_.clear();
        complain(environment_,
                 paths_.shown(*file.object).toStdString() + ": "
                     + visibleName(QString::fromStdString(file.failure)).toStdString());
        return;
    }
    if (environment_.isErrorTerminal) {
        copyIsUnderWay(progress);
        return;
    }
    if (isQuiet_)
        return;
    const QString localName = QString::fromStdString(file.path.filename().string());
    const bool isRenamed = localName != NVX_stringByTrimmingNullCharacters(file.object->fileName());
    environment_.err << fmt::format("{}  {}{}  {}\n", countOf(number, progress).toStdString(),
                                    shownName(*file.object).toStdString(),
                                    isRenamed ? " as " + visibleName(localName).toStdString() : "",
                                    byteCountText(file.object->objectCompressedSize()));
}

QString CopyDisplay::details(const CopyProgress& progress) const
{
    const std::uint64_t copied = copiedBytes(progress);
    QString text = countOf(progress.numberOfCopiedItems(), progress) + QStringLiteral("  ")
        + QString::fromStdString(amountText(copied, progress.totalSize()));
    if (const auto rate = rate_.bytesPerSecond())
        text += QStringLiteral("  ") + QString::fromStdString(rateText(*rate));
    if (const auto left = rate_.timeFor(progress.totalSize() - copied))
        text += QStringLiteral("  ") + QString::fromStdString(durationText(*left))
            + QStringLiteral(" left");
    return text;
}

}  // namespace nivor
