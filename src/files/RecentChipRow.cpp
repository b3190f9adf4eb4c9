#include "files/RecentChipRow.h"

#include "files/RecentChip.h"
#include "files/RecentListModel.h"
#include "foundation/MakeChild.h"
#include "notch/controls/SoftButton.h"
#include "records/Motion.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace ostrelle {
namespace {

constexpr int kChipGap = 8;
constexpr int kMoreSide = 42;
constexpr double kMoreRadius = 11;
constexpr double kChipListResponse = 0.22;
constexpr double kPlaceRest = 0.25; ///< logical pixels

double placeOfChip(int row)
{
    return RecentChipRow::kMargin + double(row) * (RecentChip::kPlateWidth + kChipGap);
}

} // namespace

RecentChipRow::Place::Place(RecentChip &of, const ControlContext &context, double at,
                            const std::function<void()> &changed)
    : chip(of)
    , x(context, at, changed, kPlaceRest)
    , presence(context, 0, changed)
{
}

RecentChipRow::RecentChipRow(const ControlContext &context, RecentListModel &recents, QString symbol, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_recents(recents)
    , m_symbol(std::move(symbol))
    , m_more(makeChild<SoftButton>(this, context,
                                   SoftButton::Content{.radius = kMoreRadius,
                                                       .padding = {},
                                                       .ground = SoftButton::Ground::Tinted,
                                                       .font = FontRole::CaptionMedium}))
{
    setAttribute(Qt::WA_NoSystemBackground);
    m_more.setGeometry(static_cast<int>(placeOfChip(kMostChips)), kMargin, kMoreSide, kMoreSide);
    static_assert(kMargin == RecentChip::kOverhang);
    connect(&m_more, &QAbstractButton::clicked, this, &RecentChipRow::allWanted);
    connect(&recents, &RecentListModel::followed, this, &RecentChipRow::follow);
    connect(&recents, &QAbstractItemModel::dataChanged, this, &RecentChipRow::refresh);
    follow();
    for (const auto &[id, place] : m_places)
        place->presence.jumpTo(1);
    applyLooks();
}

RecentChipRow::~RecentChipRow() = default;

QSize RecentChipRow::sizeHint() const
{
    return {static_cast<int>(placeOfChip(kMostChips)) + kMoreSide + kMargin, RecentChip::kPlateHeight + 2 * kMargin};
}

void RecentChipRow::setOpacity(double opacity)
{
    if (std::exchange(m_opacity, opacity) == opacity)
        return;
    m_more.setPresence(opacity);
    applyLooks();
}

void RecentChipRow::shake(const QUuid &id)
{
    const auto place = m_places.find(id);
    if (place != m_places.end())
        place->second->chip.shake();
}

void RecentChipRow::applyLooks()
{
    for (const auto &[id, place] : m_places) {
        place->chip.move(static_cast<int>(std::lround(place->x.value())), 0);
        place->chip.setChipPresence(place->presence.value() * m_opacity);
        if (place->isLeaving && !place->presence.isMoving())
            place->chip.hide();
    }
}

void RecentChipRow::follow()
{
    std::erase_if(m_places, [](const auto &entry) {
        const bool isGone = entry.second->chip.isHidden();
        if (isGone)
            entry.second->chip.deleteLater();
        return isGone;
    });
    const int count = std::min(m_recents.rowCount(), kMostChips);
    std::optional<double> lostFocus;
    for (const auto &[id, place] : m_places) {
        const int row = m_recents.rowOf(id);
        place->isLeaving = row < 0 || row >= count;
        if (place->isLeaving) {
            place->presence.animateTo(0, Motion::damped(kChipListResponse));
            if (place->chip.hasFocusWithin())
                lostFocus = place->x.target();
        }
        place->chip.setEnabled(!place->isLeaving);
    }
    for (int row = 0; row < count; ++row) {
        Place &place = ensurePlace(row);
        place.chip.setEntry(m_recents.entry(row));
        place.x.animateTo(placeOfChip(row), Motion::damped(kChipListResponse));
        place.presence.animateTo(1, Motion::damped(kChipListResponse));
    }
    placeMore();
    applyLooks();
    if (lostFocus)
        takeFocusAt(*lostFocus);
}

/// The keyboard goes on with what took the place of the chip that has left.
void RecentChipRow::takeFocusAt(double x)
{
    for (int row = std::min(m_recents.rowCount(), kMostChips) - 1; row >= 0; --row) {
        if (placeOfChip(row) <= x || row == 0) {
            m_places[m_recents.idAt(row)]->chip.setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

RecentChipRow::Place &RecentChipRow::ensurePlace(int row)
{
    const QUuid id = m_recents.idAt(row);
    std::unique_ptr<Place> &place = m_places[id];
    if (!place) {
        auto &chip = makeChild<RecentChip>(this, m_context, m_symbol);
        connect(&chip, &QAbstractButton::clicked, this, [this, id] { Q_EMIT opened(id); });
        connect(&chip, &RecentChip::forgotten, this, [this, id] { Q_EMIT forgotten(id); });
        connect(&chip, &RecentChip::previewToggled, this, [this, id] { Q_EMIT previewToggled(id); });
        place = std::make_unique<Place>(chip, m_context, placeOfChip(row), [this] { applyLooks(); });
        chip.show();
    }
    return *place;
}

void RecentChipRow::placeMore()
{
    const int beyond = m_recents.rowCount() - kMostChips;
    m_more.setVisible(beyond > 0);
    if (beyond <= 0)
        return;
    m_more.setLabel(QStringLiteral("+%1").arg(beyond));
    m_more.setHelp(QStringLiteral("%1 more · show all").arg(beyond));
}

QList<QWidget *> RecentChipRow::focusOrder()
{
    QList<QWidget *> order;
    for (int row = 0; row < std::min(m_recents.rowCount(), kMostChips); ++row)
        order += m_places[m_recents.idAt(row)]->chip.focusOrder();
    order.append(&m_more);
    return order;
}

void RecentChipRow::refresh()
{
    for (const auto &[id, place] : m_places) {
        const int row = m_recents.rowOf(id);
        if (row >= 0)
            place->chip.setEntry(m_recents.entry(row));
    }
}

} // namespace ostrelle
