#include "notch/PanelBackdrop.h"

#include "notch/Backdrop.h"
#include "notch/ModuleChromeMetrics.h"
#include "notch/NotchAppearance.h"
#include "notch/NotchGeometry.h"
#include "platform/PanelHost.h"

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

/// Room for the ears and for a spring that goes beyond its end.
constexpr double kSideMargin = 20;
constexpr double kLargestTopInset = 64;

QRectF largestArea(double panelWidth)
{
    double body = 0;
    for (const KestroModule module : kAllModules)
        body = std::max(body, maximumBodyHeight(module));
    const double reduction = kBackdropReduction;
    const auto roundedUp = [reduction](double length) { return std::ceil(length / reduction) * reduction; };
    const double width = roundedUp(chrome::kPanelWidth + 2 * kSideMargin);
    const double height = roundedUp(body + kLargestTopInset + kSeamStripHeight);
    return {panelWidth / 2 - width / 2, 0, width, height};
}

} // namespace

PanelBackdrop::PanelBackdrop(PanelHost &host, NotchAppearance &appearance, QObject *parent)
    : QObject(parent)
    , m_host(host)
    , m_appearance(appearance)
{
    connect(&appearance, &NotchAppearance::changed, this, [this] {
        if (m_appearance.scheme() != m_blurredFor)
            blur();
    });
}

void PanelBackdrop::capture(double panelWidth)
{
    if (m_host.glass() == PanelHost::Glass::Compositor)
        return;
    const int generation = ++m_generation;
    m_host.captureBackdrop(largestArea(panelWidth), this,
                           [this, generation, panelWidth](const BackdropCapture &capture) {
                               if (generation != m_generation || capture.image.isNull())
                                   return;
                               m_captured = capture.image;
                               m_area = capture.area.translated(-panelWidth / 2, 0);
                               blur();
                           });
}

void PanelBackdrop::release()
{
    ++m_generation;
    m_captured = {};
    m_blurred = {};
}

void PanelBackdrop::blur()
{
    m_blurredFor = m_appearance.scheme();
    m_blurred = blurBackdrop(m_captured, m_blurredFor);
    Q_EMIT changed();
}

} // namespace ostrelle
