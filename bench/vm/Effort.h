/// What a piece of work took from the machine.
#pragma once

#include <sys/resource.h>

#include <chrono>
#include <cstdio>

namespace nivor::bench {

/// Counts from its making on, for the whole process.
class Effort {
public:
    Effort()
        : before_(used())
        , began_(std::chrono::steady_clock::now())
    {
    }

    [[nodiscard]] double seconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - began_).count();
    }

    /// To standard error, behind what was done: the time, and where the processor spent it. On a
    /// machine of one processor the rest of the time went to the kernel's own threads, to the
    /// responder and to waiting.
    void tell(unsigned long long count, const char* what) const
    {
        const double took = seconds();
        const rusage after = used();
        std::fprintf(
            stderr, "%llu %s in %.3f s: %.3f s in the process, %.3f s in the kernel, %ld waits\n",
            count, what, took, difference(after.ru_utime, before_.ru_utime),
            difference(after.ru_stime, before_.ru_stime), after.ru_nvcsw - before_.ru_nvcsw);
    }

private:
    static rusage used()
    {
        rusage usage{};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage;
    }

    static double difference(const timeval& after, const timeval& before)
    {
        return static_cast<double>(after.tv_sec - before.tv_sec)
            + static_cast<double>(after.tv_usec - before.tv_usec) / 1e6;
    }

    rusage before_;
    std::chrono::steady_clock::time_point began_;
};

}  // namespace nivor::bench
