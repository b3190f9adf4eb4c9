#pragma once

#include "notch/Theme.h"
#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"
#include "records/KestroModule.h"

#include <QWidget>

namespace ostrelle {

/// One landing zone: a tool that takes what is being dragged, and what it does with it. The widget is a little larger
/// than the zone, which grows under the drag.
class DropZone : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kWidth = 152;
    static constexpr int kHeight = 76;

    DropZone(const ControlContext &context, KestroModule module, const QString &action, QWidget *parent);

    KestroModule module() const { return m_module; }
    /// The zone at rest, in the parent's coordinates.
    QRect frame() const;
    void setFrameCorner(const QPoint &corner);
    /// The drag is over it.
    void setHovered(bool hovered);
    /// The glass below it is still as dark as the closed notch.
    void setOnDark(bool onDark);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintGround(QPainter &painter, const QRectF &zone) const;
    void paintContent(QPainter &painter, const QRectF &zone) const;
    const Theme::Palette &palette() const;

    ControlContext m_context;
    KestroModule m_module;
    QString m_action;
    AnimatedNumber m_hover;
    bool m_isOnDark = false;
};

} // namespace ostrelle
