/// Another local time zone for the length of a test.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include <time.h>

namespace nivor::test {

/// Makes `name` (such as "Asia/Tokyo") the process's time zone, and puts the old one back when
/// destroyed. Not while other threads run.
// NOLINTBEGIN(concurrency-mt-unsafe): made and ended while the test has one thread.
class TimeZone {
public:
    explicit TimeZone(const char* name)
    {
        if (const char* const before = std::getenv("TZ"))
            before_ = before;
        ::setenv("TZ", name, 1);
        ::tzset();
    }

    ~TimeZone()
    {
        if (before_)
            ::setenv("TZ", before_->c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }

    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    std::optional<std::string> before_;
};
// NOLINTEND(concurrency-mt-unsafe)

}  // namespace nivor::test
