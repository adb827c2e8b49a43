#include "cli/DeleteDisplay.h"

#include "cli/ObjectPaths.h"
#include "cli/Output.h"
#include "content/DeleteResult.h"

#include <ostream>

namespace nivor {

DeleteDisplay::DeleteDisplay(CliEnvironment& environment, const ObjectPaths& paths, bool isQuiet)
    : environment_(environment)
    , paths_(paths)
    , isQuiet_(isQuiet)
    , line_(environment)
{
}

void DeleteDisplay::fileWillBeDeleted(const ObjectInfoData& object, std::size_t number,
                                      std::size_t total)
{
    if (line_.isDue()) {
        line_.show(QStringLiteral("Deleting ") + shownName(object),
                   QStringLiteral("%1 / %2").arg(number).arg(total));
    }
}

bool DeleteDisplay::isStopRequested()
{
    return environment_.isInterrupted();
}

void DeleteDisplay::fileDidFinish(const DeletedFile& file)
{
    const std::string path = paths_.shown(*file.object).toStdString();
    if (!file.isDeleted) {
        line_.clear();
        complain(environment_, path + ": " + file.failure);
    } else if (!environment_.isErrorTerminal && !isQuiet_) {
        environment_.err << path << " deleted\n";
    }
}

}  // namespace nivor
