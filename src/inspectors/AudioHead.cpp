#include "inspectors/AudioHead.h"

#include "files/AudioPreview.h"
#include "files/PathToolTip.h"
#include "files/RecentWell.h"
#include "foundation/MakeChild.h"
#include "inspectors/SeekBar.h"
#include "media_client/AudioInfo.h"
#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/PlayBadge.h"
#include "notch/controls/RowPlate.h"
#include "records/Motion.h"
#include "records/PathText.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kHeadRadius = 12;
constexpr double kHeadPadding = 12;
constexpr double kHeadWell = 38;
constexpr double kHeadWellRadius = 8;
constexpr double kTextLeft = kHeadPadding + kHeadWell + 12;
constexpr int kBadgeDiameter = 30;
constexpr int kBadgeInset = 14; ///< from the trailing edge
constexpr double kNameHeight = 16;
/// How far the name is above the middle while the bar is there.
constexpr double kNameLift = 10;
constexpr double kBarLine = 41; ///< middle of the bar's line
constexpr double kTimeHeight = 16;
constexpr int kBarGap = 6;

} // namespace

AudioHead::AudioHead(const ControlContext &context, AudioPreview &preview, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_preview(preview)
    , m_badge(makeChild<PlayBadge>(this, context, kBadgeDiameter))
    , m_bar(makeChild<SeekBar>(this, context))
    , m_playing(context, 0,
                [this] {
                    m_bar.setPresence(std::clamp(m_playing.value(), 0.0, 1.0));
                    m_bar.setVisible(m_playing.value() > 0);
                    update();
                })
    , m_pathWatch(preview.bindablePlayingPath().addNotifier([this] { followPreview(); }))
    , m_positionWatch(preview.bindablePosition().addNotifier([this] { followPreview(); }))
    , m_lengthWatch(preview.bindableLength().addNotifier([this] { followPreview(); }))
{
    setAttribute(Qt::WA_NoSystemBackground);
    setFixedHeight(kHeight);
    setAccessibleRole(*this, QAccessible::Grouping);
    m_badge.setShown(preview.isAvailable());
    m_bar.hide();
    connect(&m_badge, &QAbstractButton::clicked, this, [this] { m_preview.toggle(m_path); });
    connect(&m_bar, &SeekBar::sought, this, [this](double position) { m_preview.seek(position); });
    connect(&m_bar, &QAbstractSlider::sliderMoved, this, qOverload<>(&QWidget::update));
    connect(&preview, &AudioPreview::failed, this, [this](const QString &path) {
        if (path == m_path)
            m_badge.shake();
    });
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

AudioHead::~AudioHead() = default;

void AudioHead::setFile(const QString &path, double duration)
{
    m_path = path;
    m_duration = std::isfinite(duration) ? duration : 0;
    setAccessibleName(lastPathComponent(path).toString());
    setToolTip(pathToolTip(path));
    followPreview();
    update();
}

bool AudioHead::isPlaying() const
{
    return !m_path.isEmpty() && m_preview.playingPath() == m_path;
}

double AudioHead::length() const
{
    return isPlaying() && m_preview.length() > 0 ? m_preview.length() : m_duration;
}

void AudioHead::followPreview()
{
    const bool plays = isPlaying();
    m_badge.setPlaying(plays);
    m_badge.setProgress(plays && length() > 0 ? std::optional(std::clamp(m_preview.position() / length(), 0.0, 1.0))
                                              : std::nullopt);
    if (plays)
        m_bar.setTime(m_preview.position(), length());
    else
        m_bar.setEnabled(false);
    placeBar();
    m_playing.animateTo(plays ? 1 : 0, Motion::hover());
    if (plays)
        m_bar.show();
    update();
}

int AudioHead::timeWidth() const
{
    // As wide as the longer one, so that the bar does not move.
    return static_cast<int>(
        std::ceil(QFontMetricsF(Theme::font(FontRole::Mono)).horizontalAdvance(AudioInfo::timeString(length()))));
}

void AudioHead::placeBar()
{
    const int left = static_cast<int>(kTextLeft) + timeWidth() + kBarGap;
    const int right = m_badge.x() - static_cast<int>(kHeadPadding) - timeWidth() - kBarGap;
    const int top = static_cast<int>(kBarLine) - SeekBar::kHeight / 2;
    m_bar.setGeometry(left, top, std::max(right - left, 0), SeekBar::kHeight);
}

void AudioHead::resizeEvent(QResizeEvent *)
{
    m_badge.move(width() - kBadgeInset - kBadgeDiameter, (height() - kBadgeDiameter) / 2);
    placeBar();
}

void AudioHead::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = m_context.appearance.palette();
    const double playing = std::clamp(m_playing.value(), 0.0, 1.0);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.tileTint);
    painter.drawRoundedRect(QRectF(rect()), kHeadRadius, kHeadRadius);
    const QRectF square(kHeadPadding, (height() - kHeadWell) / 2, kHeadWell, kHeadWell);
    const RecentWell well{
        .symbol = QStringLiteral("waveform"), .thumbnail = {}, .prominence = RecentWell::Prominence::Strong};
    well.paint(painter, square, kHeadWellRadius, m_context);

    const double room = m_badge.x() - kHeadPadding - kTextLeft;
    painter.setFont(Theme::font(FontRole::BodyMedium));
    painter.setPen(palette.text1);
    const QRectF name(kTextLeft, (height() - kNameHeight) / 2 - kNameLift * playing, room, kNameHeight);
    painter.drawText(name, RowPlate::kLineFlags,
                     QFontMetricsF(painter.font()).elidedText(accessibleName(), Qt::ElideMiddle, room));
    if (playing <= 0)
        return;
    painter.setFont(Theme::font(FontRole::Mono));
    painter.setPen(faded(palette.text2, playing));
    const QRectF times(kTextLeft, kBarLine - kTimeHeight / 2, room, kTimeHeight);
    painter.drawText(times, Qt::AlignLeft | Qt::AlignVCenter, AudioInfo::timeString(m_bar.shownPosition()));
    if (length() > 0)
        painter.drawText(times, Qt::AlignRight | Qt::AlignVCenter, AudioInfo::timeString(length()));
}

} // namespace ostrelle
