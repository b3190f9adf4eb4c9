#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace ostrelle {

/// A theme of icons with those that it inherits from, after the freedesktop Icon Theme Specification 0.13. Reads the
/// disk in its constructor and whenever it is asked. Of one thread, any one.
class IconTheme
{
public:
    /// `folders` are the base directories, the most important first. What the theme and its parents lack is looked for
    /// in `fallback` and then in "hicolor".
    IconTheme(const QString &name, const QString &fallback, QStringList folders);

    /// The file of an icon that is to be shown `size` logical pixels wide at this scale: of the nearest theme that has
    /// any of the names, the first of them. Empty when there is none.
    QString find(const QStringList &names, int size, int scale) const;

private:
    /// One size of icons in a theme.
    struct Folder
    {
        QString path; ///< below the theme's own folders
        int scale = 1;
        int size = 0;
        // The sizes that its icons are meant for, logical pixels.
        int least = 0;
        int most = 0;
    };
    struct Theme
    {
        QStringList roots;
        QList<Folder> folders;
    };

    static QList<Folder> byFitness(QList<Folder> folders, int size, int scale);
    void add(const QString &name, QStringList &seen);

    QStringList m_folders;
    QList<Theme> m_themes; ///< nearest first
};

} // namespace ostrelle
