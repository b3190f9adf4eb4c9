#pragma once

#include "notch/controls/ControlContext.h"

#include <QWidget>

namespace ostrelle {

/// The number of items in the header, in figures of one width.
class HistoryCount : public QWidget
{
    Q_OBJECT
public:
    HistoryCount(const ControlContext &context, QWidget *parent);

    void setCount(int count);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ControlContext m_context;
    QString m_figures;
};

} // namespace ostrelle
