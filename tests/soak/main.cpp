// The program `soak`: cycles of connecting, listing, copying, stopping, deleting and disconnecting
// on simulated cameras with random faults, with a look at what the process holds.

#include "soak/SoakRun.h"

#include <CLI/CLI.hpp>

#include <stdlib.h>
#include <unistd.h>

#include <cstdlib>

namespace {

/// Each thread keeps some freed blocks to itself, and these count as live. Only the environment can
/// tell the allocator not to, and only at the start.
void startAgainWithoutThreadCaches(char* argv[])
{
    constexpr const char* name = "GLIBC_TUNABLES";
    if (std::getenv(name) != nullptr)
        return;
    if (::setenv(name, "glibc.malloc.tcache_count=0", 1) == 0)
        static_cast<void>(::execv("/proc/self/exe", argv));
}

}  // namespace

int main(int argc, char* argv[])
{
    startAgainWithoutThreadCaches(argv);
    nivor::soak::SoakOptions options;
    CLI::App app("Cycles of using a simulated camera with random faults.");
    app.add_option("--cycles", options.cycles, "How many cycles in all")
        ->check(CLI::Range(40, 1'000'000'000));
    app.add_option("--seed", options.seed, "What the choices follow from; printed");
    app.add_option("--threads", options.threads, "How many engines work at a time")
        ->check(CLI::Range(1, 256));
    app.add_option("--only", options.only, "Run this one cycle alone");
    CLI11_PARSE(app, argc, argv);
    return nivor::soak::SoakRun(options).run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
