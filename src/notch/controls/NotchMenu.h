#pragma once

#include <QColor>
#include <QList>
#include <QMenu>

#include <functional>

namespace ostrelle {

class NotchAppearance;

/// A context menu in the looks of the notch. It is opened through Popups.
class NotchMenu : public QMenu
{
    Q_OBJECT
public:
    NotchMenu(const NotchAppearance &appearance, QWidget *parent);

    enum class Purpose { Ordinary, Destructive };

    /// An entry whose action runs from the event loop: the menu is closed then, and the action may end what it belongs
    /// to. Not when `context` is gone by then.
    void addEntry(const QString &text, const QObject *context, const std::function<void()> &action,
                  Purpose purpose = Purpose::Ordinary);

protected:
    void initStyleOption(QStyleOptionMenuItem *option, const QAction *action) const override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QList<const QAction *> m_destructive;
    QColor m_warning;
};

} // namespace ostrelle
