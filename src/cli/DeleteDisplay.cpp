#include "cli/DeleteDisplay.h"

#include "cli/Output.h"
#include "content/DeleteResult.h"

#include <ostream>

namespace nivor {

DeleteDisplay::DeleteDisplay(CliEnvironment& environment, bool isQuiet)
    : environment_(environment)
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
    const std::string name = shownName(*file.object).toStdString();
    if (!file.isDeleted) {
        line_.clear();
        complain(environment_, name + ": " + file.failure);
    } else if (!environment_.isErrorTerminal && !isQuiet_) {
        environment_.err << name << " deleted\n";
    }
}

}  // namespace nivor
