#include "files/RecentChip.h"

#include "files/ForgetBadge.h"
#include "files/PathToolTip.h"
#include "files/PlayingRing.h"
#include "files/RecentWell.h"
#include "foundation/MakeChild.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/PlayBadge.h"
#include "notch/controls/RowPlate.h"
#include "records/Motion.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

#include <utility>

namespace ostrelle {
namespace {

constexpr double kChipRadius = 11;
constexpr double kChipWell = 30;
constexpr double kChipWellRadius = 8;
constexpr double kChipPadding = 7;
constexpr double kChipSpacing = 8;
constexpr double kNameTop = 7;
constexpr double kNameLine = 15;
constexpr double kSummaryLine = 13;
constexpr int kChipPlayDiameter = 26;
constexpr int kChipPlayLeft = 9;

} // namespace

RecentChip::RecentChip(const ControlContext &context, QString symbol, QWidget *parent)
    : NotchButton(context, parent)
    , m_context(context)
    , m_symbol(std::move(symbol))
    , m_play(makeChild<PlayBadge>(this, context, kChipPlayDiameter))
    , m_forget(makeChild<ForgetBadge>(this, context))
    , m_ring(context, 0, [this] { update(); })
{
    setFixedSize(sizeHint());
    setFocusPolicy(Qt::TabFocus);
    m_play.move(kChipPlayLeft, kOverhang + (kPlateHeight - kChipPlayDiameter) / 2);
    m_forget.move(width() - ForgetBadge::kDiameter, 0);
    connect(&m_play, &QAbstractButton::clicked, this, &RecentChip::previewToggled);
    connect(&m_forget, &QAbstractButton::clicked, this, &RecentChip::forgotten);
    // The badges are there while one of them has the focus, too.
    connect(qApp, &QApplication::focusChanged, this, &RecentChip::refreshBadges);
}

RecentChip::~RecentChip()
{
    // A widget that has the focus gives it up when nothing but a widget is left of it.
    qApp->disconnect(this);
}

void RecentChip::setEntry(const RecentEntry &entry)
{
    m_entry = entry;
    // While a file plays this comes ten times a second: assistive technology is told of what is new.
    if (const QString words = entry.description(); words != accessibleName())
        setAccessibleName(words);
    if (entry.path != accessibleDescription()) {
        setAccessibleDescription(entry.path);
        setToolTip(pathToolTip(entry.path));
    }
    m_ring.animateTo(entry.isPlaying ? 1 : 0, Motion::hover());
    m_play.setPlaying(entry.isPlaying);
    m_play.setProgress(entry.progress);
    refreshBadges();
    update();
}

void RecentChip::setChipPresence(double presence)
{
    setPresence(presence);
    m_play.setPresence(presence);
    m_forget.setPresence(presence);
}

void RecentChip::shake()
{
    m_play.shake();
}

QList<QWidget *> RecentChip::focusOrder()
{
    return {this, &m_forget};
}

double RecentChip::cornerRadius() const
{
    return kChipRadius;
}

bool RecentChip::hitButton(const QPoint &position) const
{
    return shape().contains(position);
}

bool RecentChip::hasFocusWithin() const
{
    const QWidget *focused = QApplication::focusWidget();
    return focused != nullptr && (focused == this || isAncestorOf(focused));
}

void RecentChip::refreshBadges()
{
    const bool isInUse = m_isHovered || hasFocusWithin();
    m_play.setShown(m_entry.isPlayable && (isInUse || m_entry.isPlaying));
    setTabOrder(this, &m_play);
    m_forget.setShown(isInUse);
}

bool RecentChip::event(QEvent *event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave || event->type() == QEvent::Hide) {
        m_isHovered = event->type() == QEvent::Enter;
        refreshBadges();
    }
    return NotchButton::event(event);
}

void RecentChip::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete)
        Q_EMIT forgotten();
    else
        NotchButton::keyPressEvent(event);
}

void RecentChip::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = appearance().palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(presence());
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(palette.tileTint, palette.hoverTint, hoverAmount()));
    painter.drawRoundedRect(shape(), kChipRadius, kChipRadius);

    const QRectF plate = shape();
    const QRectF square(plate.x() + kChipPadding, plate.y() + (plate.height() - kChipWell) / 2, kChipWell, kChipWell);
    const RecentWell well{.symbol = m_symbol, .thumbnail = m_entry.thumbnail};
    well.paint(painter, square, kChipWellRadius, m_context);

    const double left = square.x() + kChipWell + kChipSpacing;
    const double room = plate.x() + plate.width() - kChipPadding - left;
    const auto paintLine = [&](double top, double line, FontRole role, const QColor &color, const QString &text) {
        painter.setFont(Theme::font(role));
        painter.setPen(color);
        painter.drawText(QRectF(left, plate.y() + top, room, line), RowPlate::kLineFlags,
                         QFontMetricsF(painter.font()).elidedText(text, Qt::ElideRight, room));
    };
    paintLine(kNameTop, kNameLine, FontRole::CaptionMedium, palette.text1, m_entry.name);
    paintLine(kNameTop + kNameLine, kSummaryLine, FontRole::Micro, m_entry.isMissing ? palette.redText : palette.text3,
              m_entry.secondText());
    PlayingRing{.radius = kChipRadius, .presence = m_ring.value()}.paint(painter, plate, appearance());
}

} // namespace ostrelle
