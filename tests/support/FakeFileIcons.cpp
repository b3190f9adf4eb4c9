#include "support/FakeFileIcons.h"

#include <QPixmap>

namespace ostrelle {

QIcon FakeFileIcons::iconFor(const QString &path) const
{
    if (path.isEmpty()) {
        return {};
    }
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::blue);
    return QIcon(pixmap);
}

} // namespace ostrelle
