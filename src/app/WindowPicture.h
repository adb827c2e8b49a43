/// A picture of the window as a file, for where no screen is.
#pragma once

#include <QTimer>

#include <filesystem>
#include <functional>

namespace nivor {

class AppDelegate;
class MainWindow;

/// Waits until the list has been read and shown, saves the picture and ends the program: with 0, or
/// with 1 when the file could not be written or the list didn't come within a minute.
class WindowPicture {
public:
    WindowPicture(MainWindow& window, const AppDelegate& controller, std::filesystem::path file);

private:
    void look();

    MainWindow& window_;
    const AppDelegate& controller_;
    const std::filesystem::path file_;
    QTimer timer_;
    int looks_ = 0;
    int looksAfterList_ = 0;
};

}  // namespace nivor
