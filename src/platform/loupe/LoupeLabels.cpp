#include "platform/loupe/LoupeLabels.h"

#include "platform/DesktopFonts.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace ostrelle {

namespace {

// Logical pixels.
constexpr double kLensRadius = 87;
constexpr double kGapToLens = 16;
constexpr double kCapsuleWidth = 110;
constexpr double kCapsuleHeight = 32;
constexpr double kSwatchInset = 10;
constexpr double kSwatch = 14;
constexpr double kTextX = 33;
constexpr double kGap = 6;
constexpr double kHintHeight = 24;
constexpr double kHintInset = 5;
constexpr double kHintEnd = 9;
constexpr double kKeyHeight = 14;
constexpr double kKeyPadding = 5;
constexpr double kBetweenHints = 11.5;
constexpr double kShadow = 10;
constexpr double kDistanceToEdge = 8;
constexpr double kBadgeHeight = 14;
constexpr double kBadgeOverlap = 6;
constexpr double kContentHeight = kCapsuleHeight + kGap + kHintHeight;

struct Hint
{
    QStringView key;
    QStringView meaning;
};
constexpr std::array<Hint, 3> kHints{Hint{u"\u21b5", u"Pick"}, Hint{u"\u2190\u2191\u2193\u2192", u"1 px"},
                                     Hint{u"Esc", u"Cancel"}};

QFont captionFont(int pixels, QFont::Weight weight)
{
    QFont font = desktopFonts::interfaceFont(weight);
    font.setPixelSize(pixels);
    return font;
}

QFont valueFont()
{
    QFont font = desktopFonts::monospacedFont();
    font.setPixelSize(15);
    return font;
}

QFont keyFont()
{
    return captionFont(11, QFont::DemiBold);
}

QFont meaningFont()
{
    return captionFont(11, QFont::Medium);
}

double keyWidth(const Hint &hint)
{
    return std::max(20.0, QFontMetricsF(keyFont()).horizontalAdvance(hint.key.toString()) + 2 * kKeyPadding);
}

double meaningWidth(const Hint &hint)
{
    return QFontMetricsF(meaningFont()).horizontalAdvance(hint.meaning.toString());
}

double hintWidth()
{
    double width = kHintInset + kHintEnd + kBetweenHints * (kHints.size() - 1);
    for (const Hint &hint : kHints)
        width += keyWidth(hint) + kGap + meaningWidth(hint);
    return std::ceil(width);
}

void paintCapsule(QPainter &painter, const QRectF &rect, const QColor &fill)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(rect, rect.height() / 2, rect.height() / 2);
}

void paintShadow(QPainter &painter, const QRectF &capsule)
{
    // Capsules upon each other, each a little larger: a blur that is painted once.
    for (double reach = kShadow; reach > 0; reach -= 1) {
        const QRectF rect = capsule.translated(0, 3).adjusted(-reach, -reach, reach, reach);
        paintCapsule(painter, rect, QColor(0, 0, 0, qRound(2 + 8 * (1 - reach / kShadow))));
    }
}

void paintHints(QPainter &painter, const QRectF &capsule)
{
    double x = capsule.x() + kHintInset;
    const double y = capsule.center().y();
    for (const Hint &hint : kHints) {
        const QRectF key(x, y - kKeyHeight / 2, keyWidth(hint), kKeyHeight);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, 31));
        painter.drawRoundedRect(key, 5, 5);
        painter.setFont(keyFont());
        painter.setPen(QColor(255, 255, 255, 235));
        painter.drawText(key, Qt::AlignCenter | Qt::TextDontClip, hint.key.toString());
        const QRectF meaning(key.right() + kGap, capsule.y(), meaningWidth(hint), capsule.height());
        painter.setFont(meaningFont());
        painter.setPen(QColor(255, 255, 255, 166));
        painter.drawText(meaning, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextDontClip, hint.meaning.toString());
        x = meaning.right() + kBetweenHints;
    }
}

} // namespace

LoupeLabels::LoupeLabels(double scale, LoupeLens::Shadow shadow)
    : m_scale(scale)
    , m_margin(shadow == LoupeLens::Shadow::Soft ? kShadow + 3 : 1)
    , m_width(std::max(hintWidth(), kCapsuleWidth + 2 * kBadgeHeight))
    , m_backdrop((QSizeF(m_width + 2 * m_margin, kContentHeight + kBadgeOverlap + 2 * m_margin) * scale).toSize(),
                 QImage::Format_ARGB32_Premultiplied)
{
    paintBackdrop(shadow);
}

QPoint LoupeLabels::position(const QPoint &hotSpot, const QRect &screen) const
{
    const double reach = (kLensRadius + kGapToLens) * m_scale;
    const double content = (kContentHeight + m_margin) * m_scale; // what must be seen of it
    const double above = m_margin + kBadgeOverlap;                // of the picture, before the first capsule
    const bool fitsBelow = hotSpot.y() + reach + content <= screen.y() + screen.height();
    const double y =
        fitsBelow ? hotSpot.y() + reach - above * m_scale : hotSpot.y() - reach - (above + kContentHeight) * m_scale;
    const double beyond = (m_margin - kDistanceToEdge) * m_scale; // of the picture, which may hang over the edge
    const double least = screen.x() - beyond;
    const double most = std::max(least, screen.x() + screen.width() - size().width() + beyond);
    const double x = std::clamp(hotSpot.x() + 0.5 - size().width() / 2.0, least, most);
    return QPointF(x, y).toPoint();
}

void LoupeLabels::paintBackdrop(LoupeLens::Shadow shadow)
{
    m_backdrop.fill(Qt::transparent);
    QPainter painter(&m_backdrop);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(m_scale, m_scale);
    painter.translate(m_margin, m_margin + kBadgeOverlap);
    const QRectF capsule((m_width - kCapsuleWidth) / 2, 0, kCapsuleWidth, kCapsuleHeight);
    const double width = hintWidth();
    const QRectF hint((m_width - width) / 2, kCapsuleHeight + kGap, width, kHintHeight);
    if (shadow == LoupeLens::Shadow::Soft)
        paintShadow(painter, capsule);
    paintCapsule(painter, hint, QColor(8, 8, 16, 204));
    paintHints(painter, hint);
    paintCapsule(painter, capsule, QColor(16, 21, 37));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 28), 0.5));
    painter.drawRoundedRect(capsule.adjusted(0.25, 0.25, -0.25, -0.25), 15.75, 15.75);
}

void LoupeLabels::paint(QImage &canvas, const Content &content) const
{
    for (int y = 0; y < canvas.height(); ++y)
        std::memcpy(canvas.scanLine(y), m_backdrop.constScanLine(y), static_cast<std::size_t>(canvas.width()) * 4);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(m_scale, m_scale);
    painter.translate(m_margin + (m_width - kCapsuleWidth) / 2, m_margin + kBadgeOverlap);
    painter.setPen(QPen(QColor(255, 255, 255, 51), 0.5));
    painter.setBrush(QColor(content.swatch));
    painter.drawRoundedRect(QRectF(kSwatchInset, (kCapsuleHeight - kSwatch) / 2, kSwatch, kSwatch), 4, 4);
    painter.setPen(Qt::white);
    painter.setFont(valueFont());
    painter.drawText(QRectF(kTextX, 0, kCapsuleWidth - kTextX, kCapsuleHeight), Qt::AlignVCenter | Qt::AlignLeft,
                     content.text);
    if (content.gathered > 0) {
        const QString count = QString::number(content.gathered);
        painter.setFont(captionFont(9, QFont::DemiBold));
        const double width = std::max(15.0, QFontMetricsF(painter.font()).horizontalAdvance(count) + 8);
        const QRectF badge(kCapsuleWidth - width, -kBadgeOverlap, width, kBadgeHeight);
        paintCapsule(painter, badge, QColor(228, 62, 170));
        painter.setPen(Qt::white);
        painter.drawText(badge, Qt::AlignCenter, count);
    }
}

} // namespace ostrelle
