#include "platform/freedesktop/IconTheme.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <tuple>
#include <utility>

namespace ostrelle {
namespace {

constexpr int kDefaultThreshold = 2;
/// An icon that is smaller than asked for by less than this part is sharper as it is than a larger one shrunk.
constexpr int kNearPart = 8;

QStringList listed(const QSettings &index, const QString &key)
{
    return index.value(key).toStringList();
}

/// How ill icons of a kind of folder suit, the least first.
struct Unfitness
{
    enum class Kind { Exact, ExactAtOtherScale, Near, Larger, Smaller } kind = Kind::Exact;
    int distance = 0;
    friend bool operator<(const Unfitness &one, const Unfitness &other)
    {
        return std::tie(one.kind, one.distance) < std::tie(other.kind, other.distance);
    }
};

} // namespace

IconTheme::IconTheme(const QString &name, const QString &fallback, QStringList folders)
    : m_folders(std::move(folders))
{
    QStringList seen;
    for (const QString &theme : {name, fallback, QStringLiteral("hicolor")})
        add(theme, seen);
}

void IconTheme::add(const QString &name, QStringList &seen)
{
    // Names come from outside, and themes may inherit from each other in a circle.
    if (name.isEmpty() || name.contains(u'/') || name.startsWith(u'.') || seen.contains(name))
        return;
    seen.append(name);
    Theme theme;
    QString indexFile;
    for (const QString &folder : std::as_const(m_folders)) {
        const QString root = folder + u'/' + name;
        if (!QFileInfo(root).isDir())
            continue;
        theme.roots.append(root);
        if (const QString file = root + QStringLiteral("/index.theme"); indexFile.isEmpty() && QFile::exists(file))
            indexFile = file;
    }
    if (indexFile.isEmpty())
        return;
    QSettings index(indexFile, QSettings::IniFormat);
    const QString general = QStringLiteral("Icon Theme/");
    const QStringList paths = listed(index, general + QStringLiteral("Directories")) +
                              listed(index, general + QStringLiteral("ScaledDirectories"));
    for (const QString &path : paths) {
        index.beginGroup(path);
        const auto number = [&index](const char *key, int otherwise) {
            return index.value(QLatin1StringView(key), otherwise).toInt();
        };
        Folder folder{.path = path, .scale = std::max(number("Scale", 1), 1), .size = number("Size", 0)};
        const QString type = index.value(QStringLiteral("Type"), QStringLiteral("Threshold")).toString();
        const int threshold = type == QLatin1StringView("Threshold") ? number("Threshold", kDefaultThreshold) : 0;
        folder.least = folder.size - threshold;
        folder.most = folder.size + threshold;
        if (type == QLatin1StringView("Scalable")) {
            folder.least = number("MinSize", folder.size);
            folder.most = number("MaxSize", folder.size);
        }
        index.endGroup();
        if (folder.size > 0)
            theme.folders.append(folder);
    }
    m_themes.append(theme);
    for (const QString &parent : listed(index, general + QStringLiteral("Inherits"))) {
        // Every theme comes to it in the end, after what is asked for before it.
        if (parent != QLatin1StringView("hicolor"))
            add(parent, seen);
    }
}

QList<IconTheme::Folder> IconTheme::byFitness(QList<Folder> folders, int size, int scale)
{
    const int wanted = size * scale;
    const auto unfitness = [&](const Folder &folder) -> Unfitness {
        using Kind = Unfitness::Kind;
        const int least = folder.least * folder.scale;
        const int most = folder.most * folder.scale;
        if (wanted >= least && wanted <= most)
            return {folder.scale == scale ? Kind::Exact : Kind::ExactAtOtherScale};
        if (wanted > most)
            return {(wanted - most) * kNearPart <= wanted ? Kind::Near : Kind::Smaller, wanted - most};
        return {Kind::Larger, least - wanted};
    };
    std::stable_sort(folders.begin(), folders.end(),
                     [&](const Folder &one, const Folder &other) { return unfitness(one) < unfitness(other); });
    return folders;
}

QString IconTheme::find(const QStringList &names, int size, int scale) const
{
    for (const Theme &theme : m_themes) {
        const QList<Folder> folders = byFitness(theme.folders, size, scale);
        for (const QString &name : names) {
            for (const Folder &folder : folders) {
                for (const QString &root : theme.roots) {
                    const QString stem = root + u'/' + folder.path + u'/' + name;
                    for (const char *ending : {".png", ".svg", ".xpm"}) {
                        if (QString file = stem + QLatin1StringView(ending); QFile::exists(file))
                            return file;
                    }
                }
            }
        }
    }
    return {};
}

} // namespace ostrelle
