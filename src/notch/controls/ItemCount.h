#pragma once

#include "notch/controls/ControlContext.h"

#include <QWidget>

namespace ostrelle {

/// The number of entries in the header of a tool, in figures of one width.
class ItemCount : public QWidget
{
    Q_OBJECT
public:
    ItemCount(const ControlContext &context, QWidget *parent);

    void setCount(int count);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ControlContext m_context;
    QString m_figures;
};

} // namespace ostrelle
