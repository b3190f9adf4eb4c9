#include "notch/DropRouterView.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/DropZone.h"
#include "notch/NotchViewModel.h"
#include "notch/OutlineFade.h"
#include "notch/ToolRegistry.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kZoneSpacing = 10;
constexpr int kPadding = 14;

} // namespace

DropRouterView::DropRouterView(const ControlContext &context, NotchViewModel &viewModel, const ToolRegistry &registry,
                               QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_viewModel(viewModel)
    , m_registry(registry)
    , m_fade(makeChild<OutlineFade>(this))
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(QStringLiteral("Landing zones"));
    setAccessibleRole(*this, QAccessible::List);
    setGraphicsEffect(&m_fade);
    m_fade.setEnabled(false);
    m_hoveredWatch = viewModel.bindableHoveredDropZone().addNotifier([this] { showHovered(); });
}

void DropRouterView::setTargets(const QList<KestroModule> &targets)
{
    const auto isFor = [](const DropZone *zone, KestroModule module) { return zone->module() == module; };
    if (std::equal(m_zones.begin(), m_zones.end(), targets.begin(), targets.end(), isFor))
        return;
    for (DropZone *zone : m_zones)
        delete zone;
    m_zones.clear();
    for (const KestroModule module : targets) {
        const Tool *tool = m_registry.find(module);
        auto &zone = makeChild<DropZone>(this, m_context, module, tool != nullptr ? tool->dropAction : QString());
        zone.show();
        m_zones.push_back(&zone);
    }
    showHovered();
}

void DropRouterView::place(const QPointF &topCentre, double travel)
{
    const int count = static_cast<int>(m_zones.size());
    const QSize size(count * (DropZone::kWidth + kZoneSpacing) - kZoneSpacing + 2 * kPadding,
                     DropZone::kHeight + 2 * kPadding);
    const QPointF corner = topCentre - QPointF(size.width() / 2.0, 0);
    setGeometry(QRect((corner + QPointF(0, travel)).toPoint(), size));
    QPoint zoneCorner(kPadding, kPadding);
    QMap<KestroModule, QRectF> frames;
    for (DropZone *zone : m_zones) {
        zone->setFrameCorner(zoneCorner);
        zoneCorner.rx() += DropZone::kWidth + kZoneSpacing;
        frames.insert(zone->module(), QRectF(zone->frame().translated(corner.toPoint())));
    }
    if (!m_viewModel.dropTargets().isEmpty())
        m_viewModel.setDropZoneFrames(frames);
}

void DropRouterView::setLook(double opacity, bool onDark, const QPainterPath &outline)
{
    setVisible(opacity > 0);
    for (DropZone *zone : m_zones)
        zone->setOnDark(onDark);
    m_fade.setLook(opacity, outline.translated(-pos()));
    if (!m_fade.isEnabled())
        m_fade.setEnabled(true);
}

void DropRouterView::settle()
{
    if (m_fade.isEnabled())
        m_fade.setEnabled(false);
}

void DropRouterView::showHovered()
{
    const std::optional<KestroModule> hovered = m_viewModel.hoveredDropZone();
    for (DropZone *zone : m_zones)
        zone->setHovered(zone->module() == hovered);
}

} // namespace ostrelle
