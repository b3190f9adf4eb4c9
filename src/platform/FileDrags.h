#pragma once

#include <QObject>
#include <QPointF>
#include <QStringList>

namespace ostrelle {

/// Files that are dragged over the panel, by another program or by this one. One drag at a time, in this order:
/// entered, then moved and filesKnown in any order, then left or dropped. Only drags that offer files are reported. No
/// call blocks for the source: its list is read asynchronously, with a deadline, and a source that dies or falls silent
/// ends the drag as if it had left. Positions are the panel widget's: logical pixels. Main thread.
class FileDrags : public QObject
{
    Q_OBJECT
public:
    /// More files than this of one drag are left out.
    static constexpr int kFileLimit = 10'000;

    using QObject::QObject;

    /// Tells the source whether a drop at the present position would be taken (as a copy); from entered on, also
    /// before the files are known. Every drag begins refused. After the release it changes nothing.
    virtual void setAccepted(bool accepted) = 0;

Q_SIGNALS:
    void entered(const QPointF &position);
    /// The drag's local files in their order, absolute paths; always told before dropped. Empty: its list could not be
    /// read within half a second, or holds none. Told once, or once more with the files of a source that was later.
    void filesKnown(const QStringList &paths);
    void moved(const QPointF &position);
    void left();
    /// Released over the panel while accepted, with what filesKnown told last; up to half a second after the release
    /// if the source is late. No paths: there was nothing to take.
    void dropped(const QPointF &position, const QStringList &paths);
};

} // namespace ostrelle
