#include "clipboard/ClipboardRowDelegate.h"

#include "clipboard/ClipboardListModel.h"
#include "clipboard/ClipboardRowPictures.h"
#include "clipboard/RelativeAge.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/CentredImage.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/RowPlate.h"
#include "platform/FileIcons.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kSpacing = 9;
constexpr double kTileSide = ClipboardRowPictures::kSide;
constexpr double kTileRadius = 6;
constexpr int kIconSide = 18;
constexpr double kSymbolSize = 11;
constexpr double kButtonSymbolSize = 10.5;
constexpr double kPinSize = 9;
constexpr double kPinRotation = 45;
constexpr double kPinOpacity = 0.75;
constexpr double kPieceSpacing = 4;

QColor opaque(QColor color, double alpha)
{
    color.setAlphaF(static_cast<float>(std::clamp(alpha, 0.0, 1.0)));
    return color;
}

QString symbolOf(ClipItem::Kind kind)
{
    switch (kind) {
    case ClipItem::Kind::Text:
        return QStringLiteral("text.alignleft");
    case ClipItem::Kind::Link:
        return QStringLiteral("link");
    case ClipItem::Kind::Image:
        return QStringLiteral("photo");
    case ClipItem::Kind::Files:
        return QStringLiteral("doc");
    }
    Q_UNREACHABLE();
}

/// Pieces of text after one another, each in a layout of its own, so that the direction of one does not turn another.
class PieceLine
{
public:
    PieceLine(QPainter &painter, const QRectF &line)
        : m_painter(painter)
        , m_metrics(painter.font())
        , m_left(line)
    {
    }

    double widthOf(const QString &text) const { return m_metrics.horizontalAdvance(text); }
    double separatorWidth() const { return widthOf(separator()) + 2 * kPieceSpacing; }

    /// Draws `text`, cut so that `reserved` remains free behind it; leaves it out when nothing of it fits.
    void add(const QString &text, double reserved)
    {
        const double before = m_isEmpty ? 0 : separatorWidth();
        const double available = m_left.width() - before - reserved;
        const QString shown = m_metrics.elidedText(text, Qt::ElideRight, available);
        if (shown.isEmpty())
            return;
        if (!m_isEmpty) {
            m_left.adjust(kPieceSpacing, 0, 0, 0);
            draw(separator());
            m_left.adjust(kPieceSpacing, 0, 0, 0);
        }
        draw(shown);
        m_isEmpty = false;
    }

private:
    static QString separator() { return QStringLiteral("\u00b7"); }

    void draw(const QString &text)
    {
        m_painter.drawText(m_left, RowPlate::kLineFlags, text);
        m_left.adjust(widthOf(text), 0, 0, 0);
    }

    QPainter &m_painter;
    QFontMetricsF m_metrics;
    QRectF m_left;
    bool m_isEmpty = true;
};

} // namespace

ClipboardRowDelegate::ClipboardRowDelegate(const ControlContext &context, FileIcons &icons,
                                           const ClipboardRowPictures &pictures, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_context(context)
    , m_icons(icons)
    , m_pictures(pictures)
{
}

QSize ClipboardRowDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {0, RowPlate::kPitch};
}

void ClipboardRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const auto row = index.data(ClipboardListModel::kRowRole).value<ClipboardRow>();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const Theme::Palette &palette = m_context.appearance.palette();
    const QRectF plate = RowPlate::plate(QRectF(option.rect));

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(isSelected ? palette.hoverTint : palette.tileTint);
    painter->drawRoundedRect(plate, RowPlate::kRadius, RowPlate::kRadius);

    const QRectF tile(plate.x() + RowPlate::kPadding, plate.y() + (plate.height() - kTileSide) / 2, kTileSide,
                      kTileSide);
    paintPreview(*painter, tile, row);
    paintTrailing(*painter, plate, row, isSelected);

    const double left = tile.x() + kTileSide + kSpacing;
    const bool hasButtons = isSelected || row.id == m_handover.leaving;
    const QRectF trailing = RowPlate::buttonRect(plate, hasButtons ? 1 : 0);
    const double right =
        hasButtons || row.pinned ? trailing.x() - kSpacing : plate.x() + plate.width() - RowPlate::kPadding;
    const QRectF titleLine(left, plate.y() + RowPlate::kLinesTop, right - left, RowPlate::kTitleHeight);
    painter->setFont(Theme::font(FontRole::Body));
    painter->setPen(palette.text1);
    painter->drawText(titleLine, RowPlate::kLineFlags,
                      QFontMetricsF(painter->font()).elidedText(row.title, Qt::ElideRight, titleLine.width()));
    paintSecondary(*painter,
                   QRectF(left, titleLine.y() + RowPlate::kTitleHeight, right - left, RowPlate::kSecondHeight), row);
    painter->restore();
}

void ClipboardRowDelegate::paintPreview(QPainter &painter, const QRectF &tile, const ClipboardRow &row) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_context.appearance.palette().tileTint);
    painter.drawRoundedRect(tile, kTileRadius, kTileRadius);
    if (row.kind == ClipItem::Kind::Image) {
        const QImage picture = m_pictures.tile(row.id);
        if (!picture.isNull()) {
            painter.save();
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            QBrush brush(picture);
            const double scale = kTileSide / picture.width();
            brush.setTransform(QTransform::fromTranslate(tile.x(), tile.y()).scale(scale, scale));
            painter.setBrush(brush);
            painter.drawRoundedRect(tile, kTileRadius, kTileRadius);
            painter.restore();
            return;
        }
    }
    if (row.kind == ClipItem::Kind::Files && !row.iconPath.isEmpty()) {
        const auto icon = m_icons.iconFor(row.iconPath, kIconSide, painter.device()->devicePixelRatioF());
        if (!icon)
            return;
        if (!icon->isNull()) {
            paintCentred(painter, tile, *icon);
            return;
        }
    }
    paintSymbol(painter, tile, symbolOf(row.kind));
}

void ClipboardRowDelegate::paintSymbol(QPainter &painter, const QRectF &tile, QStringView symbol) const
{
    paintGlyph(painter, symbol, tile, kSymbolSize, GlyphWeight::Regular, m_context.appearance.palette().text2);
}

void ClipboardRowDelegate::paintSecondary(QPainter &painter, const QRectF &line, const ClipboardRow &row) const
{
    painter.setFont(Theme::font(FontRole::Micro));
    painter.setPen(m_context.appearance.palette().text3);
    PieceLine pieces(painter, line);
    const QString age = relativeAgeOf(row.date);
    const double ageWidth = pieces.separatorWidth() + pieces.widthOf(age);
    if (!row.detail.isEmpty())
        pieces.add(row.detail, ageWidth);
    if (!row.appName.isEmpty())
        pieces.add(row.appName, ageWidth);
    pieces.add(age, 0);
}

void ClipboardRowDelegate::paintTrailing(QPainter &painter, const QRectF &plate, const ClipboardRow &row,
                                         bool isSelected) const
{
    const Theme::Palette &palette = m_context.appearance.palette();
    const bool isLeaving = !isSelected && row.id == m_handover.leaving && m_handover.progress < 1;
    if (isLeaving) {
        const QColor color = faded(palette.text2, 1 - m_handover.progress);
        paintGlyph(painter, row.pinned ? u"pin.slash" : u"pin", RowPlate::buttonRect(plate, 1), kButtonSymbolSize,
                   GlyphWeight::Semibold, color);
        paintGlyph(painter, u"trash", RowPlate::buttonRect(plate, 0), kButtonSymbolSize, GlyphWeight::Semibold, color);
    }
    const double pinAmount = isSelected ? 1 - m_handover.progress : isLeaving ? m_handover.progress : 1;
    if (!row.pinned || pinAmount <= 0)
        return;
    paintGlyph(painter, u"pin.fill", RowPlate::buttonRect(plate, 0), kPinSize, GlyphWeight::Regular,
               opaque(palette.text1, kPinOpacity * pinAmount), kPinRotation);
}

} // namespace ostrelle
