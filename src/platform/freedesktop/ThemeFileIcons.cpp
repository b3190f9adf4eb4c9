#include "platform/freedesktop/ThemeFileIcons.h"

#include <QMimeType>

namespace ostrelle {

QIcon ThemeFileIcons::iconFor(const QString &path) const
{
    QString name = QStringLiteral("inode/directory");
    if (!path.endsWith(u'/')) {
        const QList<QMimeType> types = m_types.mimeTypesForFileName(path);
        name = types.isEmpty() ? QStringLiteral("application/octet-stream") : types.constFirst().name();
    }
    if (const auto known = m_icons.constFind(name); known != m_icons.constEnd()) {
        return *known;
    }
    const QMimeType type = m_types.mimeTypeForName(name);
    QIcon icon;
    for (const QString &candidate : {type.iconName(), type.genericIconName(), QStringLiteral("text-x-generic")}) {
        icon = QIcon::fromTheme(candidate);
        if (!icon.isNull()) {
            break;
        }
    }
    m_icons.insert(name, icon);
    return icon;
}

} // namespace ostrelle
