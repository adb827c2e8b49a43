// From the start of the real program to its first paint: with everything in memory already, and
// with nothing of it there. This program maps nothing of what it starts but what every program
// has, since what is mapped stays in memory.

#include "Measuring.h"
#include "PageCache.h"
#include "StartedProgram.h"
#include "Table.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <sstream>
#include <thread>

#if defined(__x86_64__)
#include <x86intrin.h>
#endif

namespace {

using namespace nivor::bench;
namespace fs = std::filesystem;

constexpr int warmStarts = 15;
constexpr int coldStarts = 7;
constexpr double mebibyte = 1024 * 1024;

const Limit prompt{300, "felt as at once"};
const Limit attention{1000, "train of thought"};

bool isLibrary(const fs::path& file)
{
    return file.filename().string().find(".so") != std::string::npos;
}

void addTree(const fs::path& folder, std::set<fs::path>& files)
{
    std::error_code error;
    for (fs::recursive_directory_iterator at(folder, error), end; !error && at != end;
         at.increment(error)) {
        if (at->is_regular_file(error))
            files.insert(at->path());
    }
}

/// What a start reads: what the program has mapped in the end, and what it may have looked into on
/// the way, which is every plugin beside its own and all that is known about fonts.
std::set<fs::path> filesOf(const std::set<fs::path>& mapped)
{
    std::set<fs::path> files = mapped;
    for (const fs::path& file : mapped) {
        for (fs::path folder = file.parent_path(); folder.has_relative_path();
             folder = folder.parent_path()) {
            if (folder.filename() == "plugins")
                addTree(folder, files);
        }
    }
    for (const char* folder : {"/etc/fonts", "/usr/share/fontconfig", "/usr/share/fonts",
                               "/var/cache/fontconfig", "/usr/share/X11"})
        addTree(folder, files);
    return files;
}

class Start {
public:
    explicit Start(fs::path program)
        : program_(std::move(program))
    {
        // Its log and its settings, rather than the user's.
        const fs::path home = workFolder() / "home";
        fs::create_directories(home);
        environment_["HOME"] = home.string();
        if (std::getenv("DISPLAY") == nullptr && std::getenv("QT_QPA_PLATFORM") == nullptr)
            environment_["QT_QPA_PLATFORM"] = "offscreen";
    }

    void run()
    {
        printTitle("The start of the program");
        std::set<fs::path> mapped;
        double own = 0;
        double share = 0;
        {
            // Gone before the cold starts: what it has mapped would stay in memory.
            const StartedProgram first(program_, environment_);
            mapped = first.mappedFiles();
            own = first.mebibytes("Private_Dirty:");
            share = first.mebibytes("Pss:");
        }
        warm();
        cold(filesOf(mapped));
        linker();
        libraries(mapped);
        print({"memory at the first paint, its own", "MiB", {own}});
        print({"memory at the first paint, with its share", "MiB", {share}});
    }

private:
    void warm()
    {
        std::vector<double> times;
        for (int i = 0; i < warmStarts; ++i)
            times.push_back(StartedProgram(program_, environment_).millisecondsToFirstPaint());
        print({"warm start to the first paint", "ms", times, prompt});
    }

    void cold(const std::set<fs::path>& files)
    {
        std::vector<double> times;
        std::vector<double> gone;
        double size = 0;
        for (int i = 0; i < coldStarts; ++i) {
            dropFromCache(files);
            const CachedBytes left = cached(files);
            size = static_cast<double>(left.size);
            gone.push_back(100 * (1 - static_cast<double>(left.resident) / size));
            times.push_back(StartedProgram(program_, environment_).millisecondsToFirstPaint());
        }
        print({"cold start to the first paint", "ms", times, attention});
        print({"of its files, gone from memory before that", "%", gone, Limit{100, "all"}});
        printNote(fmt::format("{} files of {:.0f} MiB; what other programs have mapped stays.",
                              files.size(), size / mebibyte));
    }

    /// The dynamic linker's own account, which is in cycles of the processor's clock.
    void linker()
    {
#if defined(__x86_64__)
        const double perMillisecond = cyclesPerMillisecond();
        std::vector<double> total;
        std::vector<double> relocating;
        std::vector<double> loading;
        for (int i = 0; i < warmStarts; ++i) {
            const std::string account = linkerAccount();
            const auto add = [&](std::vector<double>& values, const std::string& line) {
                const auto at = account.find(line);
                if (at != std::string::npos)
                    values.push_back(std::stod(account.substr(at + line.size())) / perMillisecond);
            };
            add(total, "total startup time in dynamic loader: ");
            add(relocating, "time needed for relocation: ");
            add(loading, "time needed to load objects: ");
        }
        if (total.empty() || relocating.empty() || loading.empty())
            return;
        print({"of the warm start, in the dynamic linker", "ms", total});
        print({"    of that, relocating", "ms", relocating});
        print({"    of that, mapping the libraries", "ms", loading});
#endif
    }

#if defined(__x86_64__)
    static double cyclesPerMillisecond()
    {
        using namespace std::chrono_literals;
        const auto cycles = __rdtsc();
        const double seconds = secondsOf([] { std::this_thread::sleep_for(200ms); });
        return static_cast<double>(__rdtsc() - cycles) / (seconds * 1000);
    }
#endif

    std::string linkerAccount()
    {
        const fs::path base = workFolder() / "linker";
        fs::remove_all(base);
        fs::create_directories(base);
        auto environment = environment_;
        environment["LD_DEBUG"] = "statistics";
        environment["LD_DEBUG_OUTPUT"] = (base / "account").string();
        {
            // The account is complete when the program has ended.
            const StartedProgram program(program_, environment);
        }
        // Named by the process's number: the first is the program's, others are what it started.
        std::set<fs::path> accounts;
        addTree(base, accounts);
        std::ostringstream text;
        for (const fs::path& account : accounts)
            text << std::ifstream(account).rdbuf();
        return text.str();
    }

    static void libraries(const std::set<fs::path>& mapped)
    {
        const auto count = std::count_if(mapped.begin(), mapped.end(), &isLibrary);
        double size = 0;
        for (const fs::path& file : mapped) {
            std::error_code error;
            const auto bytes = fs::file_size(file, error);
            if (isLibrary(file) && !error)
                size += static_cast<double>(bytes);
        }
        print({"shared libraries and plugins loaded", "", {static_cast<double>(count)}});
        print({"their files", "MiB", {size / mebibyte}});
    }

    const fs::path program_;
    std::map<std::string, std::string> environment_;
};

}  // namespace

/// The program is the argument; it appears on the screen that there is, or on none.
int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: bench_start PROGRAM\n", stderr);
        return 2;
    }
    try {
        Start(fs::absolute(argv[1])).run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_start: %s\n", error.what());
        return 1;
    }
    return 0;
}
