// How the time of what the program does grows with the number of things that it does it to: ten
// times as many should take ten times as long.

#include "ManyObjects.h"
#include "Measuring.h"
#include "Table.h"
#include "WindowProgram.h"

#include "app/OutlineView.h"
#include "content/ContentLoader.h"
#include "content/CopyProgress.h"
#include "content/CopyRun.h"
#include "content/CopyRunObserver.h"
#include "content/SortDescriptor.h"

#include <QApplication>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numeric>

namespace {

using namespace nivor;
using namespace nivor::bench;
namespace fs = std::filesystem;

constexpr double microseconds = 1e6;
constexpr int repetitions = 3;

/// Prints the time per item at each size, and after the first the exponent of the growth.
class Growth {
public:
    Growth(std::string name, std::string item)
        : name_(std::move(name))
        , unit_("us/" + std::move(item))
    {
    }

    /// `seconds`: what so many items took, once for each repetition. The exponent is that of the
    /// least: other programs can only add to it.
    void add(int count, std::vector<double> seconds)
    {
        const double least = *std::min_element(seconds.begin(), seconds.end());
        for (double& value : seconds)
            value *= microseconds / count;
        Figure figure{fmt::format("{}, {} of them", name_, count), unit_, std::move(seconds)};
        if (lastCount_ > 0)
            figure.limit = Limit{lastSeconds_ / lastCount_ * microseconds,
                                 fmt::format("least at {}", lastCount_)};
        print(figure);
        if (lastCount_ > 0) {
            const double exponent =
                std::log10(least / lastSeconds_) / std::log10(double(count) / lastCount_);
            print({fmt::format("    exponent from {} on", lastCount_),
                   "",
                   {exponent},
                   Limit{1, "linear"}});
        }
        lastCount_ = count;
        lastSeconds_ = least;
    }

private:
    const std::string name_;
    const std::string unit_;
    int lastCount_ = 0;
    double lastSeconds_ = 0;
};

std::vector<double> repeated(const std::function<double()>& seconds)
{
    std::vector<double> values;
    for (int i = 0; i < repetitions; ++i)
        values.push_back(seconds());
    return values;
}

fs::path emptyFolder(const char* name)
{
    const fs::path folder = workFolder() / name;
    fs::remove_all(folder);
    fs::create_directories(folder);
    return folder;
}

/// An engine on a simulated camera with so many objects.
class Camera {
public:
    explicit Camera(const ManyObjects& objects)
    {
        logger.setLogBaseName("Bench");
        logger.setSaveDirectory(workFolder() / "log");
        fill(*card, objects);
        host->attach(std::make_shared<SimulatedCamera>(card));
        engine.connect(anyVendorID);
    }

    ContentListing list() { return ContentLoader(engine, {}).load().listing; }

    RollingLogger logger;
    std::shared_ptr<MemoryCard> card = std::make_shared<MemoryCard>();
    std::shared_ptr<SimulatedHost> host = std::make_shared<SimulatedHost>();
    PTPCommunication engine{{.host = host, .logger = &logger, .agentPause = {}}};
};

void measureListingAndSort()
{
    Growth listing("listing without the window", "object");
    std::vector<std::pair<int, std::vector<double>>> sorts;
    for (const int count : {1'000, 10'000, 100'000}) {
        Camera camera({.total = count});
        ContentListing found;
        listing.add(count, repeated([&] { return secondsOf([&] { found = camera.list(); }); }));
        sorts.emplace_back(
            count, repeated([&] {
                ObjectList objects = found.objects;
                return secondsOf([&] { sortObjects(objects, {{SortKey::FileName, true}}); });
            }));
    }
    Growth sort("sort by name", "object");
    for (auto& [count, seconds] : sorts)
        sort.add(count, std::move(seconds));
}

void measureHandOver()
{
    Growth handOver("hand-over to the window", "object");
    for (const int count : {1'000, 10'000, 100'000}) {
        WindowProgram program;
        fill(program.card(), {.total = count});
        program.list(count);
        program.settle();
        handOver.add(count, repeated([&] {
                         return secondsOf([&] {
                             program.window.reloadData();
                             program.window.expandAllItems();
                             program.window.outlineView().viewport()->repaint();
                         });
                     }));
    }
}

void measureCopy()
{
    Growth copy("copy of 60 kB without the window", "file");
    for (const int count : {20, 200, 2'000}) {
        Camera camera({.total = count + (count + 98) / 99});
        const ContentListing listing = camera.list();
        copy.add(count, repeated([&] {
                     const fs::path folder = emptyFolder("copies");
                     CopyRunObserver observer;
                     CopyRun run(camera.engine, camera.logger, listing.handles, observer);
                     CopyResult result;
                     const double seconds = secondsOf([&] {
                         result = run.startCopyingItems(listing.objects, folder,
                                                        std::make_shared<CopyProgress>());
                     });
                     if (result.copiedCount() != static_cast<std::size_t>(count)) {
                         std::fputs("files are missing\n", stderr);
                         std::exit(1);
                     }
                     return seconds;
                 }));
    }
    fs::remove_all(workFolder() / "copies");
}

void measureLog()
{
    Growth log("log records, anew at each 5 MiB", "record");
    for (const int count : {1'000, 10'000, 100'000}) {
        log.add(count, repeated([&] {
                    RollingLogger logger;
                    logger.setLogBaseName("Bench");
                    logger.setSaveDirectory(emptyFolder("growing-log"));
                    return secondsOf([&] {
                        for (int i = 0; i < count; ++i)
                            logger.writeToFile("Bench", "measureLog", "a message as they are");
                    });
                }));
    }
}

}  // namespace

int main(int argc, char** argv)
{
    beginWithoutScreen();
    const QApplication application(argc, argv);
    installEnglish();
    printTitle("Growth with the number of things");
    measureListingAndSort();
    measureHandOver();
    measureCopy();
    measureLog();
}
