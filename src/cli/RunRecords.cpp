#include "cli/RunRecords.h"

#include "foundation/Selector.h"
#include "logging/RollingLogger.h"

#include <string_view>

namespace nivor {
namespace {

constexpr std::string_view className = "AppDelegate";

}  // namespace

void RunRecords::applicationDidFinishLaunching(const std::string& version)
{
    constexpr Selector selector{"applicationDidFinishLaunching:"};
    logger_.writeToFile(className, selector.text(), "Application start (ver" + version + ')');
}

void RunRecords::applicationWillTerminate()
{
    constexpr Selector selector{"applicationWillTerminate:"};
    logger_.writeToFile(className, selector.text(), "Application end");
}

}  // namespace nivor
