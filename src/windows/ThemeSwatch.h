#pragma once

#include "notch/controls/NotchButton.h"
#include "records/NotchTheme.h"

#include <QPixmap>

namespace ostrelle {

/// One theme to choose: the notch in small, its name and what it is like.
class ThemeSwatch : public NotchButton
{
    Q_OBJECT
public:
    struct Measures
    {
        QSizeF miniature{110, 64};
        double padding = 4;
        /// Of a cell with two lines of description.
        int height() const;
    };

    ThemeSwatch(const ControlContext &context, NotchTheme theme, const Measures &measures, QWidget *parent);

    NotchTheme theme() const { return m_theme; }
    QSize sizeHint() const override;

protected:
    double cornerRadius() const override;
    void paintEvent(QPaintEvent *event) override;

private:
    void paintMiniature(QPainter &painter, const QRectF &box);

    NotchTheme m_theme;
    Measures m_measures;
    QPixmap m_picture; ///< null when it must be painted anew
};

} // namespace ostrelle
