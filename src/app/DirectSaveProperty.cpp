#include "app/DirectSaveProperty.h"

#include "app/DirectSaveFolder.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace nivor {
namespace {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

template <typename T> using Reply = std::unique_ptr<T, FreeReply>;

/// Qt's own connection; null when there is none, or none that works.
xcb_connection_t* xConnection()
{
    const auto* x11 =
        qApp == nullptr ? nullptr : qApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 == nullptr ? nullptr : x11->connection();
    return connection != nullptr && xcb_connection_has_error(connection) == 0 ? connection
                                                                              : nullptr;
}

xcb_atom_t atomNamed(xcb_connection_t* connection, const char* name)
{
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// The window that a drag is under way from; none when that is another program's.
xcb_window_t ownDragWindow(xcb_connection_t* connection)
{
    const auto cookie = xcb_get_selection_owner(connection, atomNamed(connection, "XdndSelection"));
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection, cookie, nullptr));
    if (!reply)
        return XCB_WINDOW_NONE;
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const bool isOwn = (reply->owner & ~setup->resource_id_mask) == setup->resource_id_base;
    return isOwn ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

}  // namespace

bool DirectSaveProperty::isPossible()
{
    return xConnection() != nullptr;
}

void DirectSaveProperty::announce(const QByteArray& fileName)
{
    xcb_connection_t* connection = xConnection();
    if (connection == nullptr || window_ != XCB_WINDOW_NONE)
        return;
    window_ = ownDragWindow(connection);
    if (window_ == XCB_WINDOW_NONE)
        return;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window_, atomNamed(connection, name),
                        atomNamed(connection, "text/plain"), 8,
                        static_cast<std::uint32_t>(fileName.size()), fileName.constData());
    xcb_flush(connection);
}

QByteArray DirectSaveProperty::value() const
{
    xcb_connection_t* connection = xConnection();
    if (connection == nullptr || window_ == XCB_WINDOW_NONE)
        return {};
    // The server counts in units of four bytes.
    const auto cookie = xcb_get_property(connection, 0, window_, atomNamed(connection, name),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, longestDirectSaveAnswer / 4);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 8 || reply->bytes_after != 0)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

}  // namespace nivor
