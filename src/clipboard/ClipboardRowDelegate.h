#pragma once

#include "notch/controls/ControlContext.h"

#include <QStyledItemDelegate>
#include <QUuid>

class QFont;

namespace ostrelle {

class ClipboardRowPictures;
class FileIcons;
struct ClipboardRow;

/// Paints a row of the history. The buttons of the selected row are widgets of their own; here they are only painted
/// while they fade out of the row that was selected before.
class ClipboardRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    /// The change of the selected row.
    struct Handover
    {
        QUuid leaving;
        double progress = 1; ///< 0 at its start
    };

    ClipboardRowDelegate(const ControlContext &context, FileIcons &icons, const ClipboardRowPictures &pictures,
                         QObject *parent = nullptr);

    void setHandover(const Handover &handover) { m_handover = handover; }

    /// The option's rectangle is one pitch high and as wide as the list.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintPreview(QPainter &painter, const QRectF &tile, const ClipboardRow &row) const;
    void paintSymbol(QPainter &painter, const QRectF &tile, QStringView symbol) const;
    void paintSecondary(QPainter &painter, const QRectF &line, const ClipboardRow &row) const;
    void paintTrailing(QPainter &painter, const QRectF &plate, const ClipboardRow &row, bool isSelected) const;

    ControlContext m_context;
    FileIcons &m_icons;
    const ClipboardRowPictures &m_pictures;
    Handover m_handover;
};

} // namespace ostrelle
