#include "files/RecentFilesStrip.h"

#include "files/AudioPreview.h"
#include "files/RecentChipRow.h"
#include "files/RecentRowsView.h"
#include "foundation/MakeChild.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/Hairline.h"
#include "notch/controls/SectionLabel.h"
#include "notch/controls/SoftButton.h"
#include "records/Motion.h"

#include <QApplication>
#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kStripTop = 8;
constexpr int kStripBottom = 10;
constexpr int kHeaderLine = 17;
constexpr int kHeaderGap = 5;
constexpr int kListTop = kStripTop + kHeaderLine + kHeaderGap;
constexpr int kLeastToShowAll = 2;

SoftButton::Content headerButton(const QString &text)
{
    return {.text = text, .padding = {8, 2, 8, 2}, .font = FontRole::Micro};
}

} // namespace

RecentFilesStrip::RecentFilesStrip(const ControlContext &context, const RecentListModel::Surroundings &surroundings,
                                   const QString &symbol, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_recents(surroundings)
    , m_preview(surroundings.preview)
    , m_label(makeChild<SectionLabel>(this, context, QString()))
    , m_toggle(makeChild<SoftButton>(this, context, headerButton({})))
    , m_clear(makeChild<SoftButton>(this, context, headerButton(QStringLiteral("Clear"))))
    , m_chips(makeChild<RecentChipRow>(this, context, m_recents, symbol))
    , m_rows(makeChild<RecentRowsView>(this, context, m_recents, symbol))
    , m_expansion(context, 0, [this] { applyExpansion(); })
{
    setAttribute(Qt::WA_NoSystemBackground);
    m_clear.setHelp(QStringLiteral("Forget all recent files"));
    m_clear.setAccessibleName(QStringLiteral("Clear"));
    connect(&m_toggle, &QAbstractButton::clicked, this, [this] { Q_EMIT expansionWanted(!m_isExpanded); });
    connect(&m_clear, &QAbstractButton::clicked, this, &RecentFilesStrip::clearWanted);
    connect(&m_chips, &RecentChipRow::allWanted, this, [this] { Q_EMIT expansionWanted(true); });
    connect(&m_recents, &RecentListModel::followed, this, &RecentFilesStrip::followRecents);
    connect(&m_recents, &QAbstractItemModel::dataChanged, this, &RecentFilesStrip::showChips);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
    listen(m_chips);
    listen(m_rows);
    if (m_preview != nullptr) {
        connect(m_preview, &AudioPreview::failed, this, [this](const QString &path) {
            for (int row = 0; row < m_recents.rowCount(); ++row) {
                if (m_recents.file(row).path == path) {
                    m_chips.shake(m_recents.idAt(row));
                    m_rows.shake(m_recents.idAt(row));
                }
            }
        });
    }
    followRecents();
    applyExpansion();
}

RecentFilesStrip::~RecentFilesStrip() = default;

/// To what chips and rows have in common.
template <typename View>
void RecentFilesStrip::listen(View &view)
{
    connect(&view, &View::opened, this, [this](const QUuid &id) {
        if (const int row = m_recents.rowOf(id); row >= 0)
            Q_EMIT opened(RecentFile(m_recents.file(row)));
    });
    connect(&view, &View::forgotten, this, [this](const QUuid &id) {
        if (const int row = m_recents.rowOf(id); row >= 0)
            Q_EMIT forgotten(RecentFile(m_recents.file(row)));
    });
    connect(&view, &View::previewToggled, this, [this](const QUuid &id) {
        if (const int row = m_recents.rowOf(id); row >= 0 && m_recents.entry(row).isPlayable)
            m_preview->toggle(QString(m_recents.file(row).path));
    });
}

void RecentFilesStrip::setExpanded(bool expanded)
{
    if (expanded == m_isExpanded)
        return;
    const bool hadFocus = m_rows.hasFocus() || m_toggle.hasFocus() || m_chips.isAncestorOf(QApplication::focusWidget());
    const bool keepsFocus = m_toggle.hasFocus() && m_recents.rowCount() >= kLeastToShowAll;
    m_isExpanded = expanded;
    m_chips.setVisible(true);
    m_rows.setVisible(true);
    m_expansion.animateTo(expanded ? 1 : 0, Motion::surface());
    followRecents();
    applyExpansion();
    if (hadFocus && expanded)
        m_rows.setFocus(Qt::TabFocusReason);
    else if (hadFocus && !keepsFocus)
        m_chips.focusFirst();
}

void RecentFilesStrip::followRecents()
{
    const int count = m_recents.rowCount();
    m_label.setText(m_isExpanded ? QStringLiteral("All recent · %1").arg(count) : QStringLiteral("Recent"));
    const QString toggle = m_isExpanded ? QStringLiteral("Show less") : QStringLiteral("Show all · %1").arg(count);
    m_toggle.setLabel(toggle);
    m_toggle.setVisible(m_isExpanded || count >= kLeastToShowAll);
    arrangeHeader();
    setFocusOrder();
    showChips();
}

/// As everything stands; by itself the Tab key follows the order of its making.
void RecentFilesStrip::setFocusOrder()
{
    QWidget *previous = &m_clear;
    for (QWidget *next : m_chips.focusOrder()) {
        setTabOrder(previous, next);
        previous = next;
    }
}

void RecentFilesStrip::showChips()
{
    if (!m_isExpanded)
        m_recents.setVisibleRows(0, std::min(m_recents.rowCount(), RecentChipRow::kMostChips) - 1);
}

/// The chips fade in the first half, the rows in the second.
void RecentFilesStrip::applyExpansion()
{
    const double chips = std::clamp(1 - 2 * m_expansion.value(), 0.0, 1.0);
    const double rows = std::clamp(2 * m_expansion.value() - 1, 0.0, 1.0);
    m_chips.setOpacity(chips);
    m_rows.setOpacity(rows);
    // What is on its way out takes neither pointer nor focus.
    m_chips.setEnabled(!m_isExpanded);
    m_rows.setEnabled(m_isExpanded);
    m_chips.setVisible(!m_isExpanded || chips > 0);
    m_rows.setVisible(m_isExpanded || rows > 0);
}

void RecentFilesStrip::resizeEvent(QResizeEvent *)
{
    arrangeHeader();
    const QSize chips = m_chips.sizeHint();
    m_chips.setGeometry(kSide - RecentChipRow::kMargin, kListTop - RecentChipRow::kMargin, chips.width(),
                        chips.height());
    m_rows.setGeometry(kSide, kListTop, width() - 2 * kSide, kExpandedHeight - kListTop - kStripBottom);
}

void RecentFilesStrip::arrangeHeader()
{
    int right = width() - kSide;
    for (SoftButton *button : {&m_clear, &m_toggle}) {
        const QSize size = button->sizeHint();
        right -= size.width();
        button->setGeometry(right, kStripTop, size.width(), kHeaderLine);
    }
    m_label.setGeometry(kSide, kStripTop, right - kSide, kHeaderLine);
}

void RecentFilesStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(QRectF(kSide, 0, width() - 2 * kSide, hairlineThickness(painter)),
                     m_context.appearance.palette().hairline);
}

} // namespace ostrelle
