#pragma once

#include "platform/FileIcons.h"

#include <QHash>
#include <QMimeDatabase>

namespace ostrelle {

/// Icons of the desktop's icon theme by the MIME type that a name stands for. Main thread.
class ThemeFileIcons final : public FileIcons
{
public:
    QIcon iconFor(const QString &path) const override;

private:
    QMimeDatabase m_types;
    mutable QHash<QString, QIcon> m_icons; ///< by MIME type; null ones too, since looking for those costs most
};

} // namespace ostrelle
