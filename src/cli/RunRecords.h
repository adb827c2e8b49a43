/// Marks the beginning and the end of a run of the program in its log.
#pragma once

#include <string>

namespace nivor {

class RollingLogger;

/// Writes the records under the same names whichever program of the project runs, so that a log
/// reads alike.
class RunRecords {
public:
    RunRecords(RollingLogger& logger, const std::string& version)
        : logger_(logger)
    {
        applicationDidFinishLaunching(version);
    }

    ~RunRecords() { applicationWillTerminate(); }

    RunRecords(const RunRecords&) = delete;
    RunRecords& operator=(const RunRecords&) = delete;

private:
    void applicationDidFinishLaunching(const std::string& version);
    void applicationWillTerminate();

    RollingLogger& logger_;
};

}  // namespace nivor
