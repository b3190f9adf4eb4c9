#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QWidget>

namespace ostrelle {

/// The frame around a tool's empty state that takes files: dashed at rest, accent and solid under a drag. What is in it
/// is a child that fills it.
class DropWell : public QWidget
{
    Q_OBJECT
public:
    DropWell(const ControlContext &context, QWidget *parent);

    /// A drag that it would take is over it.
    void setTargeted(bool targeted);

protected:
    void childEvent(QChildEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void arrange();

    ControlContext m_context;
    AnimatedNumber m_targeted;
};

} // namespace ostrelle
