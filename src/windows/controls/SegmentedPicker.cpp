#include "windows/controls/SegmentedPicker.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"
#include "windows/WindowColors.h"
#include "windows/controls/DisabledLook.h"
#include "windows/controls/DropShadow.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr int kHeight = 26;
constexpr double kRadius = 8;
constexpr double kInset = 2;
constexpr double kThumbRadius = 6;
constexpr double kSeparatorWidth = 0.75;
constexpr double kSeparatorHeight = 12;
constexpr double kThumbShadowDeviation = 1.25;
constexpr double kThumbShadow = 0.22;

/// Only beside the thumb, through which the ground is seen.
void paintThumbShadow(QPainter &painter, const QRectF &thumb)
{
    QPainterPath outside;
    outside.addRect(thumb.adjusted(-kHeight, -kHeight, kHeight, kHeight));
    outside.addRoundedRect(thumb, kThumbRadius, kThumbRadius);
    painter.save();
    painter.setClipPath(outside, Qt::IntersectClip);
    paintDropShadow(painter, thumb.translated(0, 1), kThumbRadius, kThumbShadowDeviation,
                    faded(Qt::black, kThumbShadow));
    painter.restore();
}

} // namespace

/// What the pointer and assistive technology meet; the picker paints it.
class SegmentedPicker::Segment : public NotchButton
{
public:
    Segment(const ControlContext &context, const QString &label, SegmentedPicker *picker)
        : NotchButton(context, picker)
    {
        setFocusPolicy(Qt::NoFocus);
        setCheckable(true);
        setAccessibleName(label);
        setAccessibleRole(*this, QAccessible::RadioButton);
    }
    using NotchButton::hoverAmount;
    using NotchButton::pressAmount;

protected:
    double cornerRadius() const override { return kThumbRadius; }
    void paintEvent(QPaintEvent *) override {}
    void nextCheckState() override {}
};

SegmentedPicker::SegmentedPicker(const ControlContext &context, const QStringList &choices, int width, QWidget *parent)
    : NotchButton(context, parent)
    , m_choices(choices)
    , m_thumb(
          context, 0, [this] { update(); }, 1.0 / 200)
{
    setAccessibleRole(*this, QAccessible::Grouping);
    setFocusPolicy(Qt::TabFocus);
    for (int i = 0; i < choices.size(); ++i) {
        auto &segment = makeChild<Segment>(this, context, choices.at(i));
        connect(&segment, &QAbstractButton::clicked, this, [this, i] { choose(i); });
        m_segments.push_back(&segment);
    }
    m_segments.front()->setChecked(true);
    setFixedSize(width, kHeight);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void SegmentedPicker::showCurrent(int index)
{
    if (index == m_current)
        return;
    m_current = index;
    for (int i = 0; i < m_choices.size(); ++i)
        m_segments[static_cast<std::size_t>(i)]->setChecked(i == index);
    if (isVisible())
        m_thumb.animateTo(index, Motion::hover());
    else
        m_thumb.jumpTo(index);
    update();
}

void SegmentedPicker::choose(int index)
{
    const int wanted = std::clamp(index, 0, static_cast<int>(m_choices.size()) - 1);
    if (wanted == m_current)
        return;
    showCurrent(wanted);
    Q_EMIT chosen(wanted);
}

QRectF SegmentedPicker::segmentRect(double index) const
{
    const double width = (this->width() - 2 * kInset) / static_cast<double>(m_choices.size());
    return {kInset + index * width, kInset, width, height() - 2 * kInset};
}

double SegmentedPicker::cornerRadius() const
{
    return kRadius;
}

void SegmentedPicker::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        choose(m_current - 1);
        break;
    case Qt::Key_Right:
    case Qt::Key_Down:
        choose(m_current + 1);
        break;
    case Qt::Key_Home:
        choose(0);
        break;
    case Qt::Key_End:
        choose(static_cast<int>(m_choices.size()) - 1);
        break;
    default:
        event->ignore();
    }
}

void SegmentedPicker::resizeEvent(QResizeEvent *)
{
    // Separators included: what a segment shows is painted anew with it.
    for (std::size_t i = 0; i < m_segments.size(); ++i)
        m_segments[i]->setGeometry(segmentRect(static_cast<double>(i)).toAlignedRect().adjusted(-1, 0, 1, 0));
}

void SegmentedPicker::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(appearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacityOf(*this));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.track);
    painter.drawRoundedRect(rect(), kRadius, kRadius);

    const auto touch = [this](int index) {
        const Segment &segment = *m_segments[static_cast<std::size_t>(index)];
        return std::clamp(std::max(segment.hoverAmount(), segment.pressAmount()), 0.0, 1.0);
    };
    for (int i = 0; i < m_choices.size(); ++i) {
        if (i == m_current)
            continue;
        const double press = std::clamp(m_segments[static_cast<std::size_t>(i)]->pressAmount(), 0.0, 1.0);
        painter.setBrush(faded(mixed(colors.control, colors.controlHover, press), touch(i)));
        painter.drawRoundedRect(segmentRect(i), kThumbRadius, kThumbRadius);
        // Only between two that are neither chosen nor touched.
        if (i > 0 && i - 1 != m_current && touch(i) == 0 && touch(i - 1) == 0) {
            painter.setBrush(colors.hairline);
            painter.drawRect(QRectF(segmentRect(i).x() - kSeparatorWidth / 2, (height() - kSeparatorHeight) / 2,
                                    kSeparatorWidth, kSeparatorHeight));
        }
    }
    const QRectF thumb = segmentRect(std::clamp(m_thumb.value(), 0.0, static_cast<double>(m_choices.size()) - 1));
    paintThumbShadow(painter, thumb);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.segment);
    painter.drawRoundedRect(thumb, kThumbRadius, kThumbRadius);

    painter.setFont(Theme::interfaceFont(12, QFont::Medium));
    for (int i = 0; i < m_choices.size(); ++i) {
        const double nearness = std::clamp(1 - std::abs(m_thumb.value() - i), 0.0, 1.0);
        painter.setPen(mixed(colors.text2, colors.text1, std::max(nearness, touch(i))));
        painter.drawText(segmentRect(i), Qt::AlignCenter, m_choices.at(i));
    }
}

} // namespace ostrelle
