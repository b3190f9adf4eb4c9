#include "platform/freedesktop/ThemeFileIcons.h"

#include <QMimeType>

namespace ostrelle {

ThemeFileIcons::ThemeFileIcons()
    : m_toolkitTheme(QIcon::themeName())
{
    QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
}

void ThemeFileIcons::setTheme(const QString &name)
{
    QIcon::setThemeName(name.isEmpty() ? m_toolkitTheme : name);
    m_icons.clear();
}

QIcon ThemeFileIcons::iconFor(const QString &path) const
{
    const QList<QMimeType> types = m_types.mimeTypesForFileName(path);
    return iconOfType(types.isEmpty() ? QStringLiteral("application/octet-stream") : types.constFirst().name());
}

QIcon ThemeFileIcons::folderIcon() const
{
    return iconOfType(QStringLiteral("inode/directory"));
}

QIcon ThemeFileIcons::iconOfType(const QString &name) const
{
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
