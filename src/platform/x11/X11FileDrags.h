#pragma once

#include "foundation/Task.h"
#include "platform/FileDrags.h"
#include "platform/freedesktop/PortalFileTransfer.h"
#include "platform/x11/X11FileListRead.h"
#include "platform/x11/XdndTarget.h"

#include <memory>
#include <optional>

class QDropEvent;

namespace ostrelle {

class X11PanelHost;

/// Drags of files over the panel: those of other programs by XDND, those of this program by the toolkit's events, which
/// it delivers without asking anybody.
class X11FileDrags final : public FileDrags
{
    Q_OBJECT
public:
    X11FileDrags(WatchConnection &watch, TaskScheduler &scheduler, const X11RawPointer &pointer,
                 const X11PanelHost &panelHost, QObject *parent = nullptr);

    void setAccepted(bool accepted) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Of another program.
    struct Foreign
    {
        QList<X11ContentRead::Target> targets;
        std::optional<QStringList> paths; ///< once they are known
        bool isTold = false;              ///< filesKnown was emitted
        int refusals = 0;
        std::optional<quint32> releaseTime;
        std::unique_ptr<X11FileListRead> read;
        Task patience;
    };

    void foreignEnter(const QPoint &native, const QList<quint32> &types, quint32 time);
    void foreignMove(const QPoint &native, quint32 time);
    void foreignLeave();
    void foreignRelease(quint32 time);
    void ask(quint32 time);
    void handle(X11FileListRead::Outcome outcome, const QStringList &paths, quint32 askedWith);
    void giveUpWaiting();
    void know(const QStringList &paths);
    void conclude();

    void ownEnter(QDropEvent &event);
    void ownMove(QDropEvent &event);
    void ownDrop(QDropEvent &event);
    void ownLeave();

    QPointF fromNative(const QPoint &native) const;

    WatchConnection &m_watch;
    TaskScheduler &m_scheduler;
    const X11PanelHost &m_panelHost;
    PortalFileTransfer m_fileTransfer;
    QList<X11ContentRead::Target> m_targets; ///< all that there are, best first
    std::unique_ptr<XdndTarget> m_xdnd;
    std::optional<Foreign> m_foreign;
    std::optional<QStringList> m_ownPaths; ///< while a drag of this program is over the panel
    QPointF m_position;
    bool m_isAccepted = false;
};

} // namespace ostrelle
