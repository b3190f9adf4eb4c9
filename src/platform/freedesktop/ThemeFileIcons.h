#pragma once

#include "platform/FileIcons.h"

#include <QHash>
#include <QMimeDatabase>

namespace ostrelle {

/// Icons of the desktop's icon theme by the MIME type that a name stands for. What the theme lacks comes from Adwaita:
/// without a desktop's integration the toolkit looks into hicolor only, which has no icons of files. Main thread.
class ThemeFileIcons final : public FileIcons
{
public:
    ThemeFileIcons();

    /// Looks into this theme from now on; into the toolkit's own when empty. Of the whole program, as the toolkit has
    /// one.
    void setTheme(const QString &name);

    QIcon iconFor(const QString &path) const override;
    QIcon folderIcon() const override;

private:
    QIcon iconOfType(const QString &name) const;

    QString m_toolkitTheme;
    QMimeDatabase m_types;
    mutable QHash<QString, QIcon> m_icons; ///< by MIME type; null ones too, since looking for those costs most
};

} // namespace ostrelle
