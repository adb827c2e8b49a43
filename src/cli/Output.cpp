#include "cli/Output.h"

#include "content/VisibleName.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <ostream>

namespace nivor {

void complain(CliEnvironment& environment, std::string_view message)
{
    environment.err << "nivor: " << message << '\n' << std::flush;
}

void printJson(CliEnvironment& environment, const nlohmann::json& value)
{
    constexpr int indent = 2;
    constexpr bool asciiOnly = false;
    environment.out << value.dump(indent, ' ', asciiOnly, nlohmann::json::error_handler_t::replace)
                    << '\n';
}

bool flushOutput(CliEnvironment& environment)
{
    errno = 0;
    environment.out.flush();
    if (environment.out.good())
        return true;
    if (errno != EPIPE)
        complain(environment, "the output could not be written");
    return false;
}

QString shownName(const ObjectInfoData& object)
{
    return visibleName(NVX_stringByTrimmingNullCharacters(object.fileName()));
}

ExitCode worse(ExitCode a, ExitCode b)
{
    return std::max(a, b);
}

}  // namespace nivor
