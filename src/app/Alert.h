/// What the program tells or asks the user in a window of its own.
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>

namespace nivor {

struct Alert {
    enum class Style : std::uint8_t { Warning, Informational };

    Style style = Style::Warning;
    QString messageText;
    QString informativeText{};
    QString detailedText{};  ///< for those who want to know more; shown on request
    QStringList buttons;     ///< titles; the first is what Return chooses
};

/// Shows alerts; a test answers them without a screen.
class Alerts {
public:
    Alerts() = default;
    virtual ~Alerts() = default;

    Alerts(const Alerts&) = delete;
    Alerts& operator=(const Alerts&) = delete;

    /// Shows the alert and returns the index of the button that was chosen, or -1 when the alert
    /// was dismissed without one. The event loop turns meanwhile. On the main thread.
    virtual int runModal(const Alert& alert) = 0;
};

}  // namespace nivor
