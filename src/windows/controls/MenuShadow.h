#pragma once

#include <QPixmap>
#include <QWidget>

class QMenu;

namespace ostrelle {

class NotchAppearance;

/// The shadow of a menu on the window that it belongs to, for as long as the menu is open. It is a part of the window
/// and not of the menu: there needs to be no compositor, and the menu takes no clicks beside itself. Beyond the window
/// it ends.
class MenuShadow : public QWidget
{
    Q_OBJECT
public:
    /// Of a menu that has just been opened. Deletes itself.
    MenuShadow(const NotchAppearance &appearance, const QMenu &menu, double cornerRadius, QWidget *window);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap m_picture;
    QPointF m_origin; ///< of the picture
};

} // namespace ostrelle
