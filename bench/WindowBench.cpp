// The window with a hundred thousand objects and with a million: handed over, sorted, resized,
// selected and scrolled; how long its event loop is ever kept from its work; what it takes of
// memory.

#include "HeapUse.h"
#include "ManyObjects.h"
#include "Measuring.h"
#include "Table.h"
#include "Watchdog.h"
#include "WindowProgram.h"

#include "app/OutlineView.h"
#include "app/ThumbnailSlider.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/Thumbnail.h"

#include <QApplication>
#include <QScrollBar>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <random>

namespace {

using namespace nivor;
using namespace nivor::bench;

constexpr double perSecond = 1000;  // milliseconds
constexpr int foldersWithThumbnails = 100;

const Limit prompt{100, "felt as prompt"};
const Limit frame{1000.0 / 60, "60 Hz"};
const Limit attention{1000, "train of thought"};

std::vector<double> repeated(int times, const std::function<void(int)>& work)
{
    std::vector<double> values;
    for (int i = 0; i < times; ++i)
        values.push_back(secondsOf([&] { work(i); }) * perSecond);
    return values;
}

class Measured {
public:
    explicit Measured(int total)
        : total_(total)
        , view_(program_.window.outlineView())
    {
    }

    void run()
    {
        printTitle(fmt::format("The window with {} objects", total_));
        list();
        handOver();
        sort();
        slide();
        select();
        scroll();
        measureMemory();
    }

private:
    void list()
    {
        fill(program_.card(), {.total = total_, .foldersWithThumbnails = foldersWithThumbnails});
        Watchdog watchdog;
        const double seconds = program_.list(total_);
        print({"listing with the window, delays included", "objects/s", {total_ / seconds}});
        print(
            {"longest pause of the event loop while listing", "ms", {watchdog.longest()}, prompt});
        program_.settle();
    }

    void handOver()
    {
        print({"hand-over: reload, expand all, repaint", "ms",
               repeated(7,
                        [&](int) {
                            program_.window.reloadData();
                            program_.window.expandAllItems();
                            repaint();
                        }),
               attention});
    }

    void sort()
    {
        const auto by = [&](const char* name, SortKey key) {
            print({name, "ms",
                   repeated(6,
                            [&](int i) {
                                program_.controller.sortDescriptorsDidChange({{key, i % 2 != 0}});
                                repaint();
                            }),
                   attention});
        };
        by("sort by size, with the reload", SortKey::ObjectCompressedSize);
        by("sort by date, with the reload", SortKey::ModifiedDate);
        by("sort by name, with the reload", SortKey::FileName);
    }

    void slide()
    {
        print({"a step of the slider", "ms",
               repeated(21,
                        [&](int i) {
                            program_.window.thumbnailExpandSlider().setValue((i * 50) % 1000);
                            repaint();
                        }),
               prompt});
    }

    void select()
    {
        const auto toggle = [&](int) {
            program_.controller.selectAllButtonWasClicked();
            QCoreApplication::processEvents();
            repaint();
        };
        std::vector<double> all;
        std::vector<double> none;
        for (int i = 0; i < 7; ++i) {
            all.push_back(repeated(1, toggle).front());
            none.push_back(repeated(1, toggle).front());
        }
        print({"select all", "ms", all, prompt});
        print({"select none", "ms", none, prompt});
    }

    void scroll()
    {
        QScrollBar& bar = *view_.verticalScrollBar();
        const auto show = [&](int value) {
            bar.setValue(value);
            repaint();
            QCoreApplication::processEvents();
        };
        // Where the thumbnails are, and each row three times on the screen.
        print({"a frame of scrolling, thumbnails on their way", "ms",
               repeated(600, [&](int i) { show(i * bar.pageStep() / 3); }), frame});
        std::mt19937 random(1);
        std::uniform_int_distribution<int> anywhere(0, bar.maximum());
        print({"a jump to anywhere in the list", "ms",
               repeated(100, [&](int) { show(anywhere(random)); }), frame});
    }

    /// The window's share is measured on a model and a view of their own. The listing's is what
    /// becomes free when the camera is unplugged and nothing else holds on to it.
    void measureMemory()
    {
        std::shared_ptr<ObjectList> objects = program_.controller.dataModels();
        double thumbnails = 0;
        for (const auto& object : *objects)
            thumbnails +=
                object->thumbnail() ? static_cast<double>(object->thumbnail()->fileSize()) : 0.0;
        const double empty = heapInUse();
        {
            ObjectListModel model;
            model.reload(objects);
            const double withModel = heapInUse();
            OutlineView view(model);
            view.expandAllItems();
            static_cast<void>(view.numberOfRows());
            const double withView = heapInUse();
            printPerObject("heap of the window's model", withModel - empty);
            printPerObject("heap of the window's list, all expanded", withView - withModel);
        }
        program_.unplug();
        program_.turnUntil([&] { return program_.window.objects().size() == 0; });
        const double withListing = heapInUse();
        objects.reset();
        printPerObject("heap of the listing, thumbnails aside",
                       withListing - heapInUse() - thumbnails);
    }

    void printPerObject(const char* name, double bytes) const
    {
        print({name, "B/object", {bytes / total_}});
    }

    void repaint() { view_.viewport()->repaint(); }

    const int total_;
    WindowProgram program_;
    OutlineView& view_;
};

/// Files of 60 kB, from a camera without a pace of its own.
void measureCopy()
{
    printTitle("The window while 1000 files of 60 kB are copied");
    constexpr int total = 1010;
    WindowProgram program;
    fill(program.card(), {.total = total});
    program.list(total);
    program.settle();
    const std::filesystem::path folder = workFolder() / "window" / "copies";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    Watchdog watchdog;
    const double seconds = secondsOf([&] {
        program.controller.startCopyingItems(
            *program.controller.dataModels(),
            QUrl::fromLocalFile(QString::fromStdString(folder.string())));
    });
    print({"longest pause of the event loop while copying", "ms", {watchdog.longest()}, prompt});
    const ObjectList& items = *program.controller.dataModels();
    const auto files = std::count_if(items.begin(), items.end(),
                                     [](const auto& item) { return !item->isAssociation(); });
    print({"files copied under the panel", "files/s", {static_cast<double>(files) / seconds}});
    std::filesystem::remove_all(folder);
}

}  // namespace

/// Sizes may be given as arguments.
int main(int argc, char** argv)
{
    beginWithoutScreen();
    const QApplication application(argc, argv);
    installEnglish();
    const QStringList sizes = QApplication::arguments().mid(1);
    for (const QString& size : sizes)
        Measured(size.toInt()).run();
    if (!sizes.isEmpty())
        return 0;
    for (const int total : {100'000, 1'000'000})
        Measured(total).run();
    measureCopy();
}
