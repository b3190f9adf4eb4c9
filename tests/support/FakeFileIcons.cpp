#include "support/FakeFileIcons.h"

#include <QPixmap>

namespace ostrelle {

namespace {

QIcon plain(Qt::GlobalColor color)
{
    QPixmap pixmap(64, 64);
    pixmap.fill(color);
    return QIcon(pixmap);
}

} // namespace

QIcon FakeFileIcons::iconFor(const QString &path) const
{
    return path.isEmpty() ? QIcon() : plain(Qt::blue);
}

QIcon FakeFileIcons::folderIcon() const
{
    return plain(Qt::yellow);
}

} // namespace ostrelle
