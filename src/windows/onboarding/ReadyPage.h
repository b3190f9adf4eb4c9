#pragma once

#include "notch/controls/ControlContext.h"
#include "records/ShortcutAction.h"

#include <QPixmap>
#include <QPropertyNotifier>
#include <QWidget>

#include <map>

namespace ostrelle {

class ShortcutLine;
class ShortcutService;

/// The last page: how to get at the notch from now on.
class ReadyPage : public QWidget
{
    Q_OBJECT
public:
    ReadyPage(const ControlContext &context, ShortcutService &shortcuts, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void showShortcuts();

    const NotchAppearance &m_appearance;
    ShortcutService &m_shortcuts;
    std::map<ShortcutAction, ShortcutLine *> m_lines; ///< children
    QPropertyNotifier m_watch;
    QPixmap m_check; ///< null when it must be painted anew
};

} // namespace ostrelle
