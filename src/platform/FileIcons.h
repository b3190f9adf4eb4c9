#pragma once

#include <QImage>
#include <QObject>
#include <QString>

#include <optional>

namespace ostrelle {

/// The desktop's icons of files, by their names only: nothing here touches the file. Icons are loaded when they are
/// first asked for, outside the main thread. Main thread.
class FileIcons : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// The theme's icon of the kind of file that the name stands for, no side longer than `side` logical pixels.
    /// Nothing while it is being loaded; a null image when the desktop has none.
    virtual std::optional<QImage> iconFor(const QString &path, int side, double devicePixelRatio) = 0;
    /// Of a folder, which no name tells from a file.
    virtual std::optional<QImage> folderIcon(int side, double devicePixelRatio) = 0;

Q_SIGNALS:
    /// An icon that was asked for is there, or all are others because the user has chosen another theme.
    void changed();
};

} // namespace ostrelle
