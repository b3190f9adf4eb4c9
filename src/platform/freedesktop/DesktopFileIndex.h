#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace ostrelle {

/// The installed desktop files by the names that windows carry. Blocking (reads the applications folders at first use
/// and when they have changed): for a background thread, one at a time.
class DesktopFileIndex
{
public:
    struct Entry
    {
        QString id;   ///< file name without ".desktop"
        QString name; ///< Name, not localised
    };

    /// Folders in order of precedence.
    explicit DesktopFileIndex(QStringList folders);
    /// $XDG_DATA_HOME and $XDG_DATA_DIRS, each with "applications".
    static QStringList standardFolders();

    /// The first of `names` that is a file's StartupWMClass, or else its id; not minding case.
    std::optional<Entry> find(const QStringList &names);

private:
    void refresh();
    void readFile(const QString &path);

    QStringList m_folders;
    QList<QDateTime> m_stamps;
    QHash<QString, Entry> m_byClass;
    QHash<QString, Entry> m_byId;
};

} // namespace ostrelle
