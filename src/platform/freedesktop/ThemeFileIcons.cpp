#include "platform/freedesktop/ThemeFileIcons.h"

#include "platform/freedesktop/IconTheme.h"

#include <QIcon>
#include <QImageReader>
#include <QMimeType>

#include <cmath>
#include <optional>
#include <utility>

namespace ostrelle {
namespace {

/// Drawn or shrunk to fit; smaller ones stay as they are.
QImage decodedIcon(const QString &file, int side)
{
    QImageReader reader(file);
    const QSize box(side, side);
    const QSize size = reader.size();
    const bool isDrawn = file.endsWith(QLatin1StringView(".svg"));
    if (isDrawn && !size.isEmpty())
        reader.setScaledSize(size.scaled(box, Qt::KeepAspectRatio));
    QImage image = reader.read();
    if (image.width() > side || image.height() > side)
        image = image.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image.isNull() ? image : image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

class ThemeFileIcons::Loader
{
public:
    Loader(QString name, QStringList folders)
        : m_name(std::move(name))
        , m_folders(std::move(folders))
    {
    }

    QImage load(const Key &key, const QMimeDatabase &types)
    {
        if (!m_theme)
            m_theme.emplace(m_name, QStringLiteral("Adwaita"), m_folders);
        const QMimeType type = types.mimeTypeForName(key.type);
        const int scale = std::max(1, static_cast<int>(std::round(key.devicePixelRatio)));
        const int size = key.side / scale;
        QString file = m_theme->find({type.iconName(), type.genericIconName()}, size, scale);
        // Apart, so that a farther theme's icon of the very kind comes before any sheet of paper.
        if (file.isEmpty())
            file = m_theme->find({QStringLiteral("text-x-generic")}, size, scale);
        QImage image = file.isEmpty() ? QImage() : decodedIcon(file, key.side);
        image.setDevicePixelRatio(key.devicePixelRatio);
        return image;
    }

private:
    const QString m_name;
    const QStringList m_folders;
    std::optional<IconTheme> m_theme;
};

ThemeFileIcons::ThemeFileIcons()
    : m_toolkitTheme(QIcon::themeName())
    , m_loader(std::make_shared<Loader>(m_toolkitTheme, QIcon::themeSearchPaths()))
{
    QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
}

ThemeFileIcons::~ThemeFileIcons() = default;

void ThemeFileIcons::setTheme(const QString &name)
{
    QIcon::setThemeName(name.isEmpty() ? m_toolkitTheme : name);
    m_loader = std::make_shared<Loader>(QIcon::themeName(), QIcon::themeSearchPaths());
    m_icons.clear();
    Q_EMIT changed();
}

std::optional<QImage> ThemeFileIcons::iconFor(const QString &path, int side, double devicePixelRatio)
{
    const QList<QMimeType> types = m_types.mimeTypesForFileName(path);
    return icon(types.isEmpty() ? QStringLiteral("application/octet-stream") : types.constFirst().name(), side,
                devicePixelRatio);
}

std::optional<QImage> ThemeFileIcons::folderIcon(int side, double devicePixelRatio)
{
    return icon(QStringLiteral("inode/directory"), side, devicePixelRatio);
}

std::optional<QImage> ThemeFileIcons::icon(const QString &type, int side, double devicePixelRatio)
{
    const Key key{type, static_cast<int>(std::ceil(side * devicePixelRatio)), devicePixelRatio};
    if (const auto known = m_icons.constFind(key); known != m_icons.constEnd())
        return *known;
    m_icons.insert(key, std::nullopt);
    m_queue.post([this, key, loader = m_loader] {
        QImage image = loader->load(key, m_types);
        QMetaObject::invokeMethod(
            this,
            [this, key, loader, image = std::move(image)] {
                if (loader != m_loader)
                    return; // of a theme that is no longer the user's
                m_icons.insert(key, image);
                Q_EMIT changed();
            },
            Qt::QueuedConnection);
    });
    return std::nullopt;
}

} // namespace ostrelle
