#pragma once

#include "notch/controls/ControlContext.h"

#include <QWidget>

namespace ostrelle {

/// A plate on which a page groups what belongs together.
class PageCard : public QWidget
{
    Q_OBJECT
public:
    static constexpr double kRadius = 14;

    PageCard(const ControlContext &context, QWidget *parent);

protected:
    const NotchAppearance &appearance() const { return m_context.appearance; }
    void paintGround(QPainter &painter) const;
    void paintEvent(QPaintEvent *event) override;

private:
    ControlContext m_context;
};

} // namespace ostrelle
