/// The window property in which the two sides of a direct save (XDS) meet.
#pragma once

#include <QByteArray>

#include <cstdint>

namespace nivor {

/// Lies on the window that the program drags from, where both sides find it: it holds the selection
/// "XdndSelection". First the property is a file's bare name, then the target makes it the URI of
/// that file in a folder of its choice.
///
/// On the main thread. Every operation waits for the X server, and for nobody else.
class DirectSaveProperty {
public:
    /// Of the property and of the format that is dragged.
    static constexpr const char* name = "XdndDirectSave0";

    /// Whether the program is shown by an X server.
    [[nodiscard]] static bool isPossible();

    /// Makes the property `fileName`, once; does nothing before Qt has begun to drag.
    void announce(const QByteArray& fileName);

    /// What the property is now; empty when it is no text of a plausible length.
    [[nodiscard]] QByteArray value() const;

private:
    std::uint32_t window_ = 0;
};

}  // namespace nivor
