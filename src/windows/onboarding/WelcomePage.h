#pragma once

#include "notch/controls/ControlContext.h"

#include <QPixmap>
#include <QWidget>

namespace ostrelle {

/// The first page: the program's mark in the theme, its name, and what is to come.
class WelcomePage : public QWidget
{
    Q_OBJECT
public:
    WelcomePage(const ControlContext &context, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintMark(QPainter &painter);

    const NotchAppearance &m_appearance;
    QPixmap m_mark; ///< null when it must be painted anew
};

} // namespace ostrelle
