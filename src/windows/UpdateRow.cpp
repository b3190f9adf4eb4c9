#include "windows/UpdateRow.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "updates/UpdateService.h"
#include "windows/SettingsGroup.h"
#include "windows/WindowColors.h"
#include "windows/controls/PushButton.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kPadding = 12;
constexpr double kTitleLine = 26;
constexpr double kSubtitleGap = 4;
constexpr double kSubtitleLine = 15;
constexpr int kButtonGap = 8;
constexpr double kDot = 6;
constexpr double kArc = 13;
constexpr double kArcPen = 1.6;
constexpr double kMarkGap = 8;
constexpr double kTurnsPerSecond = 1.1;
constexpr double kFullTurn = 360;
constexpr int kAngleUnit = 16; ///< of the toolkit's angles, in a degree

PushButton &makeButton(UpdateRow *row, const ControlContext &context, const QString &label, PushButton::Kind kind)
{
    return makeChild<PushButton>(row, context, label, kind, PushButton::Measures());
}

} // namespace

UpdateRow::UpdateRow(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_skip(makeButton(this, context, QStringLiteral("Skip"), PushButton::Kind::Plain))
    , m_download(makeButton(this, context, QStringLiteral("Download"), PushButton::Kind::Prominent))
    , m_check(makeButton(this, context, QStringLiteral("Check Now"), PushButton::Kind::Plain))
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleRole(*this, QAccessible::Grouping);
    connect(&m_check, &QAbstractButton::clicked, this, &UpdateRow::checkRequested);
    connect(&m_skip, &QAbstractButton::clicked, this, &UpdateRow::skipRequested);
    connect(&m_download, &QAbstractButton::clicked, this, [this] { Q_EMIT downloadRequested(m_address); });
}

UpdateRow::~UpdateRow()
{
    m_context.clock.remove(*this);
}

void UpdateRow::showState(const UpdateService &updates, const SettingsStore &settings)
{
    const UpdateState state = updates.state();
    m_status = UpdateStatus::of(updates, settings);
    setAccessibleName(m_status.title);
    setAccessibleDescription(m_status.subtitle);
    const auto *available = std::get_if<updateStates::Available>(&state);
    const bool isChecking = std::holds_alternative<updateStates::Checking>(state);
    m_address = available != nullptr ? available->release.url : QUrl();
    m_mark = available != nullptr                                  ? Mark::Available
             : isChecking                                          ? Mark::Busy
             : std::holds_alternative<updateStates::Failed>(state) ? Mark::Failed
                                                                   : Mark::None;
    const bool hadFocus = m_skip.hasFocus() || m_download.hasFocus() || m_check.hasFocus();
    m_skip.setVisible(available != nullptr);
    m_download.setVisible(available != nullptr);
    m_check.setVisible(available == nullptr);
    m_check.setEnabled(!isChecking);
    handOnFocus(hadFocus, available != nullptr ? m_download : m_check);
    if (m_mark == Mark::Busy && isVisible())
        m_context.clock.add(*this);
    updateGeometry();
    arrange();
    update();
}

/// The button that a key has pressed is gone or disabled, and what takes its place shall be under the same key.
void UpdateRow::handOnFocus(bool hadFocus, PushButton &button)
{
    if (!button.isEnabled()) {
        m_stoodIn = hadFocus ? window()->focusWidget() : nullptr;
        return;
    }
    // Unless the user has gone elsewhere meanwhile.
    if (hadFocus || (m_stoodIn && m_stoodIn == window()->focusWidget()))
        button.setFocus(Qt::TabFocusReason);
    m_stoodIn = nullptr;
}

bool UpdateRow::advance(MonotonicTime now)
{
    m_now = now;
    update();
    return m_mark == Mark::Busy && isVisible() && !m_context.appearance.reducesMotion();
}

void UpdateRow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_mark == Mark::Busy)
        m_context.clock.add(*this);
}

void UpdateRow::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_context.clock.remove(*this);
}

double UpdateRow::textX() const
{
    switch (m_mark) {
    case Mark::None:
        return kPadding;
    case Mark::Busy:
        return kPadding + kArc + kMarkGap;
    case Mark::Available:
    case Mark::Failed:
        break;
    }
    return kPadding + kDot + kMarkGap;
}

WrappedText UpdateRow::subtitle(int width) const
{
    return WrappedText(m_status.subtitle, {.font = Theme::font(FontRole::Caption), .lineHeight = kSubtitleLine},
                       std::max(1.0, width - 2 * kPadding));
}

int UpdateRow::heightForWidth(int width) const
{
    const double subtitle = this->subtitle(width).height();
    return static_cast<int>(std::ceil(2 * kPadding + kTitleLine + (subtitle > 0 ? kSubtitleGap + subtitle : 0)));
}

void UpdateRow::resizeEvent(QResizeEvent *)
{
    arrange();
}

void UpdateRow::arrange()
{
    int right = width() - static_cast<int>(kPadding);
    for (PushButton *button : {&m_download, &m_skip, &m_check}) {
        if (button->isHidden())
            continue;
        const QSize size = button->sizeHint();
        button->setGeometry(right - size.width(), static_cast<int>(kPadding), size.width(), size.height());
        right -= size.width() + kButtonGap;
    }
    m_buttonsX = right + kButtonGap;
}

void UpdateRow::paintMark(QPainter &painter) const
{
    const WindowColors &colors = WindowColors::of(m_context.appearance);
    const double middle = kPadding + kTitleLine / 2;
    if (m_mark == Mark::Busy) {
        const double radius = (kArc - kArcPen) / 2;
        const QRectF circle(QPointF(kPadding + kArcPen / 2, middle - radius), QSizeF(2 * radius, 2 * radius));
        const double turns = std::chrono::duration<double>(m_now).count() * kTurnsPerSecond;
        const double angle = kFullTurn / 4 - (turns - std::floor(turns)) * kFullTurn;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(colors.controlHover, kArcPen));
        painter.drawEllipse(circle);
        painter.setPen(QPen(colors.text2, kArcPen, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(circle, static_cast<int>(angle * kAngleUnit), -90 * kAngleUnit);
    } else if (m_mark != Mark::None) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_mark == Mark::Failed ? colors.warningDot : Theme::kAccentVivid);
        painter.drawEllipse(QRectF(kPadding, middle - kDot / 2, kDot, kDot));
    }
}

void UpdateRow::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(m_context.appearance);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    SettingsGroup::paintDivider(painter, *this, m_context.appearance, kPadding);
    paintMark(painter);
    const QFont font = Theme::font(FontRole::BodyMedium);
    const QString title =
        QFontMetricsF(font).elidedText(m_status.title, Qt::ElideRight, m_buttonsX - kButtonGap - textX());
    paintLine(painter, title, font, kTitleLine, {textX(), kPadding}, colors.text1);
    subtitle(width()).paint(painter, {kPadding, kPadding + kTitleLine + kSubtitleGap}, colors.text2);
}

} // namespace ostrelle
