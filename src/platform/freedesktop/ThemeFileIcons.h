#pragma once

#include "foundation/SerialQueue.h"
#include "platform/FileIcons.h"

#include <QHash>
#include <QMimeDatabase>

#include <memory>

namespace ostrelle {

/// Icons of the desktop's icon theme by the MIME type that a name stands for. What the theme lacks comes from Adwaita:
/// without a desktop's integration the toolkit looks into hicolor only, which has no icons of files. The first look
/// into a theme was measured to take from 7 to 30 ms, so a thread of its own finds and decodes them.
class ThemeFileIcons final : public FileIcons
{
    Q_OBJECT
public:
    ThemeFileIcons();
    ~ThemeFileIcons() override;

    /// Looks into this theme from now on; into the toolkit's own when empty. Of the whole program, as the toolkit has
    /// one.
    void setTheme(const QString &name);

    std::optional<QImage> iconFor(const QString &path, int side, double devicePixelRatio) override;
    std::optional<QImage> folderIcon(int side, double devicePixelRatio) override;

private:
    class Loader;
    struct Key
    {
        QString type; ///< MIME type
        int side = 0; ///< device pixels
        double devicePixelRatio = 1;
        friend bool operator==(const Key &, const Key &) = default;
    };
    friend size_t qHash(const Key &key, size_t seed)
    {
        return qHashMulti(seed, key.type, key.side, key.devicePixelRatio);
    }

    std::optional<QImage> icon(const QString &type, int side, double devicePixelRatio);

    QString m_toolkitTheme;
    QMimeDatabase m_types;
    QHash<Key, std::optional<QImage>> m_icons; ///< without an image while it is being loaded
    std::shared_ptr<Loader> m_loader;          ///< of the theme; used on the queue's thread only
    SerialQueue m_queue;                       ///< last, so that nothing of this is gone while it works
};

} // namespace ostrelle
