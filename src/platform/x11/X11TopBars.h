#pragma once

#include "platform/x11/WatchConnection.h"

#include <QRectF>

#include <vector>

namespace ostrelle {

/// What panels reserve at the top of each monitor, in native pixels.
///
/// Read from the work area of each monitor where the desktop has one (_GTK_WORKAREAS_Dn), else from the struts of all
/// windows (EWMH 1.5, _NET_WM_STRUT_PARTIAL). _NET_WORKAREA is one rectangle for all monitors and no use.
class X11TopBars
{
public:
    explicit X11TopBars(WatchConnection &watch);

    /// Two round trips.
    void read();
    /// Nothing was reserved by anybody that tells.
    bool isEmpty() const { return m_workAreas.empty() && m_struts.empty(); }
    double heightOn(const QRectF &monitor) const;
    /// A change of this root property can change the answers.
    bool dependsOn(xcb_atom_t rootProperty) const;

private:
    struct Strut
    {
        double top = 0;
        double fromX = 0;
        double toX = 0; ///< inclusive
    };

    void readWorkAreas();
    void readStruts();

    WatchConnection &m_watch;
    xcb_atom_t m_workAreasProperty = XCB_ATOM_NONE; ///< of the current desktop
    std::vector<QRectF> m_workAreas;
    std::vector<Strut> m_struts;
};

} // namespace ostrelle
