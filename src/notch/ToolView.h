#pragma once

#include <QList>
#include <QStringList>
#include <QWidget>

#include <optional>

namespace ostrelle {

/// The body of a tool inside the chrome. It lies below the header and the tool strip and fills the rest of the panel.
class ToolView : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

    /// The body height that the tool wants, header and strip (106) included, logical pixels; nothing keeps the last
    /// one.
    virtual std::optional<double> wantedBodyHeight() const = 0;
    /// Widgets for the trailing end of the header, from left to right; owned by the view, shown by the chrome.
    virtual QList<QWidget *> headerActions();
    /// The view came on screen: choose a selection, take the focus inside the panel.
    virtual void appeared();

    /// Whether it takes these files, which are dragged over the open panel. Asked when they are known, and again when
    /// it has been found out what they are; not for every movement.
    virtual bool acceptsDrop(const QStringList &paths) const;
    /// A drag that it takes is over the panel, or no longer.
    virtual void setDropTargeted(bool targeted);
    /// Takes files that it accepted; false: it could do nothing with them.
    virtual bool dropFiles(const QStringList &paths);

    /// Takes the tool's last step back, if there is one: the undo key anywhere in the panel that nothing else wanted.
    virtual void undo();

Q_SIGNALS:
    void wantedBodyHeightChanged();
    /// headerActions() answers differently now.
    void headerActionsChanged();
    /// The visit is over: the notch should close.
    void dismissRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace ostrelle
