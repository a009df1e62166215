#include "app/WindowCompositing.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>

bool isWindowCompositingActive()
{
    // Wayland always composes; offscreen rendering has no screen to show black on.
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return true;
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return false;
    // A compositing manager owns the selection _NET_WM_CM_S<screen> while it runs (EWMH). Asked at every
    // opening, because one can start or stop at any time; two round trips cost well under a millisecond.
    static const char name[] = "_NET_WM_CM_S0";
    const xcb_intern_atom_cookie_t atomCookie = xcb_intern_atom(connection, 1, sizeof name - 1, name);
    xcb_intern_atom_reply_t* atom = xcb_intern_atom_reply(connection, atomCookie, nullptr);
    if (!atom)
        return false;
    const xcb_atom_t selection = atom->atom;
    std::free(atom);
    if (selection == XCB_ATOM_NONE)
        return false;
    xcb_get_selection_owner_reply_t* owner =
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr);
    const bool composited = owner && owner->owner != XCB_NONE;
    std::free(owner);
    return composited;
}
