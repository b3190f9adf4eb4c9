#include "files/ProjectRowDelegate.h"

#include "files/ProjectRow.h"
#include "files/ProjectsListModel.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/RowPlate.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kFolderWidth = 22;
constexpr double kFolderSize = 13;
constexpr double kFolderOpacity = 0.85;
constexpr double kSpacing = 6;
constexpr double kActionSize = 10.5;
/// Other rows glide under the dragged one and must not be read through it.
constexpr double kDraggedGround = 0.92;

} // namespace

ProjectRowDelegate::ProjectRowDelegate(const ControlContext &context, LookOf lookOf, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_context(context)
    , m_lookOf(std::move(lookOf))
{
}

QSize ProjectRowDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {0, RowPlate::kPitch};
}

QRectF ProjectRowDelegate::actionRect(const QRectF &plate, int action)
{
    return RowPlate::buttonRect(plate, static_cast<int>(kActionSymbols.size()) - 1 - action);
}

QRectF ProjectRowDelegate::nameRect(const QRectF &plate)
{
    const double left = plate.x() + RowPlate::kPadding + kFolderWidth + kSpacing;
    const double right = plate.x() + plate.width() - RowPlate::kPadding;
    return {left, plate.y() + RowPlate::kLinesTop, right - left, RowPlate::kTitleHeight};
}

void ProjectRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const auto row = index.data(ProjectsListModel::kRowRole).value<ProjectRow>();
    const Look look = m_lookOf(row.id);
    const Theme::Palette &palette = m_context.appearance.palette();
    const QRectF plate = RowPlate::plate(QRectF(option.rect));

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintPlate(*painter, plate, look);
    const QRectF folder(plate.x() + RowPlate::kPadding, plate.y(), kFolderWidth, plate.height());
    paintGlyph(*painter, u"folder.fill", folder, kFolderSize, GlyphWeight::Regular,
               row.isMissing ? palette.text3 : faded(palette.accent, kFolderOpacity));
    if (look.actions > 0) {
        for (int action = 0; action < static_cast<int>(kActionSymbols.size()); ++action)
            paintGlyph(*painter, kActionSymbols.at(static_cast<std::size_t>(action)), actionRect(plate, action),
                       kActionSize, GlyphWeight::Semibold, faded(palette.text2, look.actions));
    }
    QRectF name = nameRect(plate);
    if (look.isUnderPointer || look.actions > 0)
        name.setRight(actionRect(plate, 0).x() - kSpacing);
    paintLines(*painter, name, row, look);
    painter->restore();
}

void ProjectRowDelegate::paintPlate(QPainter &painter, const QRectF &plate, const Look &look) const
{
    const Theme::Palette &palette = m_context.appearance.palette();
    painter.setPen(Qt::NoPen);
    if (look.isDragged) {
        painter.setBrush(faded(palette.surfaceTone, kDraggedGround));
        painter.drawRoundedRect(plate, RowPlate::kRadius, RowPlate::kRadius);
    }
    painter.setBrush(mixed(palette.tileTint, palette.hoverTint, look.tint));
    painter.drawRoundedRect(plate, RowPlate::kRadius, RowPlate::kRadius);
}

void ProjectRowDelegate::paintLines(QPainter &painter, const QRectF &name, const ProjectRow &row,
                                    const Look &look) const
{
    const Theme::Palette &palette = m_context.appearance.palette();
    const auto paintLine = [&](const QRectF &line, FontRole role, const QColor &color, const QString &text) {
        painter.setFont(Theme::font(role));
        painter.setPen(color);
        painter.drawText(line, RowPlate::kLineFlags,
                         QFontMetricsF(painter.font()).elidedText(text, Qt::ElideRight, line.width()));
    };
    if (!look.isRenamed)
        paintLine(name, FontRole::BodyMedium, row.isMissing ? palette.text3 : palette.text1, row.name);
    const QRectF second(name.x(), name.y() + name.height(), name.width(), RowPlate::kSecondHeight);
    paintLine(second, FontRole::Micro, row.isMissing ? palette.orange : palette.text3, row.secondLine());
}

} // namespace ostrelle
