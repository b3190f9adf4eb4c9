#pragma once

#include <QIcon>
#include <QString>

namespace ostrelle {

/// The desktop's icons of files, by their names only: nothing here touches the file.
class FileIcons
{
public:
    virtual ~FileIcons() = default;

    /// The theme's icon of the kind that the name stands for; null when the desktop has none.
    virtual QIcon iconFor(const QString &path) const = 0;
};

} // namespace ostrelle
