#pragma once

#include "notch/Fade.h"
#include "notch/FrameClock.h"
#include "notch/NotchViewModel.h"
#include "notch/PanelFrame.h"
#include "notch/controls/ControlContext.h"

#include <functional>

namespace ostrelle {

/// All movement of the panel, so that one frame means one layout. Where the desktop wants no movement everything jumps
/// (the panel then fades between two pictures). Main thread.
class PanelMotion : private FrameClock::Client
{
public:
    PanelMotion(const ControlContext &context, double peekOpacity, std::function<void()> changed);
    ~PanelMotion() override;
    PanelMotion(const PanelMotion &) = delete;
    PanelMotion &operator=(const PanelMotion &) = delete;

    const PanelFrame &frame() const { return m_current; }
    /// Opacity of the marks while the notch is closed.
    double peekOpacity() const { return m_peekNow; }
    /// 0 the selector, 1 a tool.
    double toolness() const { return m_toolnessNow; }
    /// Opacity of a tool that was just chosen.
    double arrival() const;
    /// Opacity of the tool that it replaced.
    double departure() const { return m_departureNow; }
    /// 0 the selector or a tool, 1 the landing zones.
    double zones() const { return m_zonesNow; }
    /// Opacity of the landing zones, which are there long before they have taken the place of everything else.
    double zonesOpacity() const { return m_zonesOpacityNow; }
    bool isMoving() const;

    void moveTo(const PanelFrame &target, SurfaceMotion motion);
    void setPeekOpacity(double target);
    /// The landing zones come or go; at once where nothing is to be seen of it.
    void setZones(double target);
    void setZonesOpacity(double target);
    /// The content changes: arrival() starts at nothing, departure() at `departingOpacity`. At once where nothing is to
    /// be seen of it.
    void switchContent(double toolness, double departingOpacity);

private:
    bool advance(MonotonicTime now) override;
    bool jumps() const;
    void run();

    ControlContext m_context;
    std::function<void()> m_changed;
    Animated<PanelFrame> m_frame;
    Animated<double> m_peek;
    Animated<double> m_toolness;
    Animated<double> m_switch;
    Animated<double> m_zones;
    Fade m_zonesOpacity{0};
    Fade m_departure{0};
    PanelFrame m_current;
    double m_peekNow;
    double m_toolnessNow = 0;
    double m_switchNow = 1;
    double m_zonesNow = 0;
    double m_zonesOpacityNow = 0;
    double m_departureNow = 0;
};

} // namespace ostrelle
