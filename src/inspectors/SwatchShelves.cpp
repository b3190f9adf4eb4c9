#include "inspectors/SwatchShelves.h"

#include "foundation/MakeChild.h"
#include "inspectors/SwatchShelf.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/Hairline.h"

#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kAboveShelves = 12;
constexpr int kBelowShelves = 12;
constexpr int kShelfGap = 8;

} // namespace

SwatchShelves::SwatchShelves(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_recents(makeChild<SwatchShelf>(this, context, QStringLiteral("Recent")))
    , m_favorites(makeChild<SwatchShelf>(this, context, QStringLiteral("Favorites")))
{
    setAttribute(Qt::WA_NoSystemBackground);
    for (SwatchShelf *shelf : {&m_recents, &m_favorites}) {
        shelf->hide();
        connect(shelf, &SwatchShelf::chosen, this, &SwatchShelves::chosen);
        connect(shelf, &SwatchShelf::menuRequested, this, &SwatchShelves::menuRequested);
    }
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void SwatchShelves::setLists(const ColorLists &lists)
{
    m_recents.setColors(lists.recents);
    m_favorites.setColors(lists.favorites);
    m_recents.setVisible(!lists.recents.isEmpty());
    m_favorites.setVisible(!lists.favorites.isEmpty());
    arrange();
    update();
}

void SwatchShelves::setCurrent(const std::optional<SampledColor> &color)
{
    m_current = color;
    m_recents.setCurrent(color);
    m_favorites.setCurrent(color);
}

int SwatchShelves::wantedHeight() const
{
    const auto count = static_cast<int>(shownShelves().size());
    return count == 0 ? 0 : kAboveShelves + count * SwatchShelf::kHeight + (count - 1) * kShelfGap + kBelowShelves;
}

QList<SwatchShelf *> SwatchShelves::shownShelves() const
{
    QList<SwatchShelf *> shelves{&m_recents, &m_favorites};
    shelves.removeIf([](const SwatchShelf *shelf) { return shelf->colors().isEmpty(); });
    return shelves;
}

std::optional<SwatchShelves::Spot> SwatchShelves::spotOfFocus() const
{
    const QList<SwatchShelf *> shelves = shownShelves();
    for (int shelf = 0; shelf < static_cast<int>(shelves.size()); ++shelf) {
        if (const int index = shelves[shelf]->focusedIndex(); index >= 0)
            return Spot{shelf, index};
    }
    return std::nullopt;
}

std::optional<SwatchShelves::Spot> SwatchShelves::spotOfCurrent() const
{
    const QList<SwatchShelf *> shelves = shownShelves();
    for (int shelf = 0; m_current && shelf < static_cast<int>(shelves.size()); ++shelf) {
        if (const auto index = static_cast<int>(shelves[shelf]->colors().indexOf(*m_current)); index >= 0)
            return Spot{shelf, index};
    }
    return std::nullopt;
}

SwatchShelves::Spot SwatchShelves::neighbour(const Spot &spot, int key) const
{
    const QList<SwatchShelf *> shelves = shownShelves();
    const auto lastOf = [&](int shelf) { return static_cast<int>(shelves[shelf]->colors().size()) - 1; };
    const auto inShelf = [&](int shelf, int index) { return Spot{shelf, std::clamp(index, 0, lastOf(shelf))}; };
    switch (key) {
    case Qt::Key_Left:
        return inShelf(spot.shelf, spot.index - 1);
    case Qt::Key_Right:
        return inShelf(spot.shelf, spot.index + 1);
    case Qt::Key_Home:
        return {spot.shelf, 0};
    case Qt::Key_End:
        return {spot.shelf, lastOf(spot.shelf)};
    case Qt::Key_Up:
        return inShelf(std::max(spot.shelf - 1, 0), spot.index);
    default:
        return inShelf(std::min(spot.shelf + 1, static_cast<int>(shelves.size()) - 1), spot.index);
    }
}

bool SwatchShelves::walk(int key)
{
    const QList<SwatchShelf *> shelves = shownShelves();
    if (shelves.isEmpty())
        return false;
    const bool isVertical = key == Qt::Key_Up || key == Qt::Key_Down;
    Spot spot;
    if (const auto focused = spotOfFocus())
        spot = neighbour(*focused, key);
    else if (const auto current = spotOfCurrent())
        spot = isVertical ? *current : neighbour(*current, key);
    // A copy: choosing may change the lists.
    const SampledColor color = shelves[spot.shelf]->colors()[spot.index];
    shelves[spot.shelf]->focusSwatch(spot.index);
    Q_EMIT chosen(color);
    return true;
}

std::optional<SampledColor> SwatchShelves::focusedFavorite() const
{
    const int index = m_favorites.focusedIndex();
    return index >= 0 ? std::optional(m_favorites.colors()[index]) : std::nullopt;
}

QList<QWidget *> SwatchShelves::focusOrder() const
{
    return m_recents.focusOrder() + m_favorites.focusOrder();
}

void SwatchShelves::arrange()
{
    int top = kAboveShelves;
    for (SwatchShelf *shelf : shownShelves()) {
        shelf->setGeometry(0, top, width(), shelf->height());
        top += SwatchShelf::kHeight + kShelfGap;
    }
}

void SwatchShelves::resizeEvent(QResizeEvent *)
{
    arrange();
}

void SwatchShelves::paintEvent(QPaintEvent *)
{
    if (shownShelves().isEmpty())
        return;
    QPainter painter(this);
    const double side = SwatchShelf::kSide;
    painter.fillRect(QRectF(side, 0, width() - 2 * side, hairlineThickness(painter)),
                     m_context.appearance.palette().hairline);
}

} // namespace ostrelle
