#pragma once

#include <QObject>
#include <QPixmap>
#include <QPoint>
#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace ostrelle {

/// What a drag carries, and the picture under the pointer.
struct FileDrag
{
    QStringList paths;
    QPixmap picture;
    QPoint hotSpot; ///< in the picture, logical pixels
};

struct TextDrag
{
    QString text;
    QPixmap picture;
    QPoint hotSpot; ///< in the picture, logical pixels
};

/// Drags out of the program's windows into other programs, one at a time. Main thread.
class DragOut
{
public:
    enum class Outcome { Dropped, Cancelled };

    virtual ~DragOut() = default;

    /// Starts while a button is held over `source`. The answer comes when the drag has ended, unless `source` is gone
    /// by then. Files are offered as text/uri-list, x-special/gnome-copied-files and, where there is a portal, as
    /// application/vnd.portal.filetransfer.
    virtual void start(QWidget &source, const FileDrag &drag, std::function<void(Outcome)> ended) = 0;
    /// The same of plain text.
    virtual void startText(QWidget &source, const TextDrag &drag, std::function<void(Outcome)> ended) = 0;
};

} // namespace ostrelle
