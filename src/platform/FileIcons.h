#pragma once

#include <QIcon>
#include <QString>

namespace ostrelle {

/// The desktop's icons of files, by their names only: nothing here touches the file.
class FileIcons
{
public:
    virtual ~FileIcons() = default;

    /// The theme's icon of the kind of file that the name stands for; null when the desktop has none.
    virtual QIcon iconFor(const QString &path) const = 0;
    /// Of a folder, which no name tells from a file.
    virtual QIcon folderIcon() const = 0;
};

} // namespace ostrelle
