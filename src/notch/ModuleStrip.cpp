#include "notch/ModuleStrip.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/ModuleChromeMetrics.h"
#include "notch/NotchAppearance.h"
#include "notch/Plate.h"
#include "notch/ToolRegistry.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr QSizeF kPlate{78, 50};
/// A quarter of a device pixel of the way between two tiles.
constexpr double kPlaceRest = 0.25 / chrome::kTilePitch;

} // namespace

ModuleStrip::ModuleStrip(const ControlContext &context, ToolRegistry &registry, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_registry(registry)
    , m_platePlace(
          context, 0, [this] { update(); }, kPlaceRest)
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAccessibleName(QStringLiteral("Tools"));
    setAccessibleRole(*this, QAccessible::ToolBar);
    connect(&registry, &ToolRegistry::badgeChanged, this, [this](KestroModule module) {
        for (ModuleTile *tile : m_tiles) {
            if (tile->module() == module)
                tile->setBadge(m_registry.badge(module));
        }
    });
}

void ModuleStrip::setModules(const QList<KestroModule> &modules)
{
    const auto sameModule = [](const ModuleTile *tile, KestroModule module) { return tile->module() == module; };
    if (std::equal(m_tiles.begin(), m_tiles.end(), modules.begin(), modules.end(), sameModule))
        return;
    for (ModuleTile *tile : m_tiles)
        delete tile;
    m_tiles.clear();
    for (const KestroModule module : modules) {
        auto &tile = makeChild<ModuleTile>(this, m_context, module);
        const int index = static_cast<int>(m_tiles.size());
        tile.setBadge(m_registry.badge(module));
        connect(&tile, &QAbstractButton::clicked, this, [this, module] {
            if (module != m_active)
                Q_EMIT selected(module);
        });
        connect(&tile, &ModuleTile::focusStep, this, [this, index](int step) { focusTile(index + step); });
        tile.show();
        m_tiles.push_back(&tile);
    }
    const std::optional<KestroModule> active = std::exchange(m_active, std::nullopt);
    setActive(active);
    arrange();
}

void ModuleStrip::setActive(std::optional<KestroModule> module)
{
    if (module == m_active)
        return;
    const bool slides = m_active.has_value() && m_look.content > 0 && !m_context.appearance.reducesMotion();
    m_active = module;
    for (ModuleTile *tile : m_tiles)
        tile->setActive(tile->module() == module);
    // Without an active tool the plate fades where it is.
    const auto place = indexOf(module);
    if (place && slides)
        m_platePlace.animateTo(*place, Motion::surface());
    else if (place)
        m_platePlace.jumpTo(*place);
    update();
}

void ModuleStrip::setLook(const StripLook &look)
{
    if (look == m_look)
        return;
    m_look = look;
    arrange();
}

void ModuleStrip::arrange()
{
    const double count = static_cast<double>(m_tiles.size());
    const double pitch = chrome::kMarkPitch + (chrome::kTilePitch - chrome::kMarkPitch) * m_look.openness;
    const QSizeF size(std::max(count, 1.0) * chrome::kTilePitch, chrome::kStripHeight);
    const QRect frame = QRectF(m_look.centre - QPointF(size.width(), size.height()) / 2, size).toAlignedRect();
    setGeometry(frame);
    m_centre = m_look.centre - frame.topLeft();
    double offset = -(count - 1) / 2;
    for (ModuleTile *tile : m_tiles) {
        tile->setLook(m_look, m_centre + QPointF(offset * pitch, 0));
        offset += 1;
    }
    update();
}

std::optional<int> ModuleStrip::indexOf(std::optional<KestroModule> module) const
{
    const auto found = std::find_if(m_tiles.begin(), m_tiles.end(),
                                    [module](const ModuleTile *tile) { return tile->module() == module; });
    return found == m_tiles.end() ? std::nullopt : std::optional(static_cast<int>(found - m_tiles.begin()));
}

void ModuleStrip::focusTile(int index)
{
    if (index >= 0 && index < static_cast<int>(m_tiles.size()))
        m_tiles[static_cast<std::size_t>(index)]->setFocus(Qt::TabFocusReason);
}

void ModuleStrip::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_Down:
        focusTile(0);
        break;
    case Qt::Key_Left:
    case Qt::Key_Up:
        focusTile(static_cast<int>(m_tiles.size()) - 1);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void ModuleStrip::paintEvent(QPaintEvent *)
{
    const double opacity = m_look.content * m_look.toolness;
    if (opacity <= 0 || m_tiles.empty())
        return;
    const Theme::Palette &palette = m_context.appearance.palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double pitch = chrome::kMarkPitch + (chrome::kTilePitch - chrome::kMarkPitch) * m_look.openness;
    const double offset = m_platePlace.value() - (static_cast<double>(m_tiles.size()) - 1) / 2;
    const QPointF centre = m_centre + QPointF(offset * pitch, 0);
    const QRectF plate(centre - QPointF(kPlate.width(), kPlate.height()) / 2, kPlate);
    paintPlate(painter, plate, faded(palette.hoverTint, opacity), faded(palette.plateEdge, opacity));
}

} // namespace ostrelle
