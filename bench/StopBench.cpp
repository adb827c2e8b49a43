// From a click on the stop button to the camera's word that it has stopped, and to a window that
// can be used again.

#include "ManyObjects.h"
#include "Measuring.h"
#include "NotingHost.h"
#include "PanelClick.h"
#include "Table.h"
#include "WindowProgram.h"

#include "datasets/ObjectInfoData.h"

#include <QApplication>

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace {

using namespace nivor;
using namespace nivor::bench;
using std::chrono::microseconds;
namespace fs = std::filesystem;

constexpr int stops = 100;
constexpr double megabytesPerSecond = 40;  // of a camera on a high-speed port

// Within these there is always something left to copy.
constexpr microseconds earliest{20'000};
constexpr microseconds latest{1'000'000};
constexpr int smallFiles = 5'000;
constexpr std::uint64_t largeSize = 2'000'000'000;

const Limit prompt{100, "felt as prompt"};

double milliseconds(NotingHost::Clock::duration time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

class Stopped {
public:
    Stopped()
    {
        fill(program_.card(), {.total = smallFiles});
        program_.card().addFile(u"FILM.MOV", largeSize);
        program_.list(smallFiles + 1);
        program_.settle();
        program_.camera().setPace({.megabytesPerSecond = megabytesPerSecond});
        for (const auto& object : *program_.controller.dataModels())
            (object->objectCompressedSize() == largeSize ? film_ : pictures_).push_back(object);
    }

    void run()
    {
        printTitle(fmt::format("{} stops at random moments of a copy at {} MB/s", stops,
                               megabytesPerSecond));
        measure("one film", film_);
        measure("files of 60 kB", pictures_);
    }

private:
    void measure(const std::string& what, const ObjectList& items)
    {
        std::uniform_int_distribution<int> delay(earliest.count(), latest.count());
        std::vector<double> confirmed;
        std::vector<double> usable;
        for (int i = 0; i < stops; ++i)
            stopOnce(items, microseconds(delay(random_)), confirmed, usable);
        if (!confirmed.empty())
            print({what + ": click to the camera's confirmation", "ms", confirmed, prompt});
        print({what + ": click to a usable window", "ms", usable, prompt});
        if (confirmed.size() < stops) {
            printNote(fmt::format("{} stops fell between two files: there was nothing to confirm.",
                                  stops - confirmed.size()));
        }
    }

    void stopOnce(const ObjectList& items, microseconds delay, std::vector<double>& confirmed,
                  std::vector<double>& usable)
    {
        fs::remove_all(copies_);
        fs::create_directories(copies_);
        PanelClick click(delay);
        program_.controller.startCopyingItems(
            items, QUrl::fromLocalFile(QString::fromStdString(copies_.string())));
        program_.window.repaint();
        const auto end = NotingHost::Clock::now();
        const auto clicked = click.moment();
        if (clicked == NotingHost::Clock::time_point() || clicked > end) {
            std::fputs("the copy was over before it was stopped\n", stderr);
            std::exit(1);
        }
        if (usb_->answered() > clicked)
            confirmed.push_back(milliseconds(usb_->answered() - clicked));
        usable.push_back(milliseconds(end - clicked));
    }

    std::shared_ptr<SimulatedHost> host_ = std::make_shared<SimulatedHost>();
    std::shared_ptr<NotingHost> usb_ = std::make_shared<NotingHost>(host_);
    WindowProgram program_{host_, usb_};
    const fs::path copies_ = workFolder() / "window" / "copies";
    ObjectList film_;
    ObjectList pictures_;
    std::mt19937 random_{1};
};

}  // namespace

int main(int argc, char** argv)
{
    beginWithoutScreen();
    const QApplication application(argc, argv);
    installEnglish();
    Stopped().run();
}
