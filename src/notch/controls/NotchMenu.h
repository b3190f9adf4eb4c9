#pragma once

#include <QMenu>

namespace ostrelle {

class NotchAppearance;

/// A context menu in the looks of the notch. It is opened through Popups.
class NotchMenu : public QMenu
{
    Q_OBJECT
public:
    NotchMenu(const NotchAppearance &appearance, QWidget *parent);

protected:
    void resizeEvent(QResizeEvent *event) override;
};

} // namespace ostrelle
