#pragma once

#include "notch/controls/ControlContext.h"

#include <QStyledItemDelegate>
#include <QUuid>

#include <array>
#include <functional>

namespace ostrelle {

struct ProjectRow;

/// Paints a row of the projects. The buttons of the row under the pointer and the field of the one that is renamed are
/// widgets of their own.
class ProjectRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    /// What the list makes of a row at the moment.
    struct Look
    {
        double tint = 0; ///< 1: under the pointer, selected, renamed or dragged
        bool isUnderPointer = false;
        double actions = 0; ///< of the symbols that stand for the buttons of a row that the pointer has left
        bool isRenamed = false;
        bool isDragged = false;
    };
    using LookOf = std::function<Look(const QUuid &)>;

    /// The symbols of the actions, from the first to the last.
    static constexpr std::array<QStringView, 3> kActionSymbols{u"pencil", u"arrow.up.forward.app", u"minus.circle"};

    ProjectRowDelegate(const ControlContext &context, LookOf lookOf, QObject *parent = nullptr);

    /// The option's rectangle is one pitch high and as wide as the list.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// Place of an action.
    static QRectF actionRect(const QRectF &plate, int action);
    /// Where the name stands in a row without actions.
    static QRectF nameRect(const QRectF &plate);

private:
    void paintPlate(QPainter &painter, const QRectF &plate, const Look &look) const;
    void paintLines(QPainter &painter, const QRectF &name, const ProjectRow &row, const Look &look) const;

    ControlContext m_context;
    LookOf m_lookOf;
};

} // namespace ostrelle
