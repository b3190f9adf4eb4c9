#pragma once

#include "notch/Theme.h"

#include <QImage>
#include <QObject>
#include <QRectF>

namespace ostrelle {

class NotchAppearance;
class PanelHost;

/// The blurred picture of what lies behind the panel, taken just before it opens and kept for the whole opening. Main
/// thread.
class PanelBackdrop : public QObject
{
    Q_OBJECT
public:
    PanelBackdrop(PanelHost &host, NotchAppearance &appearance, QObject *parent);

    /// Captures anew behind a panel widget of this width, unless the compositor blurs by itself.
    void capture(double panelWidth);
    /// Forgets everything; an answer on its way is dropped.
    void release();

    const QImage &image() const { return m_blurred; }
    /// What the image shows, relative to the surface's top centre.
    const QRectF &area() const { return m_area; }

Q_SIGNALS:
    void changed();

private:
    void blur();

    PanelHost &m_host;
    NotchAppearance &m_appearance;
    QImage m_captured;
    QImage m_blurred;
    ColorScheme m_blurredFor = ColorScheme::Dark;
    QRectF m_area;
    int m_generation = 0; ///< moves with every request and release
};

} // namespace ostrelle
