#include "platform/freedesktop/DesktopFileIndex.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cmath>

namespace ostrelle {

namespace {

/// A desktop file is far smaller; what is larger is something else.
constexpr qint64 kLargestFile = 256 * 1024;
/// File systems tell time by ticks, some by two seconds. A folder that has just changed may change again within the
/// same one: its time says nothing yet.
constexpr qint64 kStampSeconds = 3;

} // namespace

DesktopFileIndex::DesktopFileIndex(QStringList folders)
    : m_folders(std::move(folders))
{
}

QStringList DesktopFileIndex::standardFolders()
{
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

std::optional<DesktopFileIndex::Entry> DesktopFileIndex::find(const QStringList &names)
{
    refresh();
    for (const auto *index : {&m_byClass, &m_byId}) {
        for (const QString &name : names) {
            if (const auto found = index->constFind(name.toLower()); !name.isEmpty() && found != index->constEnd()) {
                return *found;
            }
        }
    }
    return std::nullopt;
}

void DesktopFileIndex::refresh()
{
    QList<QDateTime> stamps;
    for (const QString &folder : m_folders) {
        stamps << QFileInfo(folder).lastModified();
    }
    if (stamps == m_stamps) {
        return;
    }
    m_stamps = stamps;
    const QDateTime now = QDateTime::currentDateTime();
    for (QDateTime &stamp : m_stamps) {
        if (std::abs(stamp.secsTo(now)) < kStampSeconds) {
            stamp = {};
        }
    }
    m_byClass.clear();
    m_byId.clear();
    for (const QString &folder : m_folders) {
        for (const QString &file : QDir(folder).entryList({QStringLiteral("*.desktop")}, QDir::Files)) {
            readFile(folder + u'/' + file);
        }
    }
}

void DesktopFileIndex::readFile(const QString &path)
{
    QFile file(path);
    if (file.size() > kLargestFile || !file.open(QIODevice::ReadOnly)) {
        return;
    }
    Entry entry{QFileInfo(path).completeBaseName(), {}};
    QString windowClass;
    bool isInEntry = false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith('[')) {
            isInEntry = line == "[Desktop Entry]";
        } else if (isInEntry && line.startsWith("Name=")) {
            entry.name = QString::fromUtf8(line.sliced(5));
        } else if (isInEntry && line.startsWith("StartupWMClass=")) {
            windowClass = QString::fromUtf8(line.sliced(15)).toLower();
        }
    }
    // A folder of higher precedence came earlier and stays.
    const QString id = entry.id.toLower();
    if (!m_byId.contains(id)) {
        m_byId.insert(id, entry);
        if (!windowClass.isEmpty() && !m_byClass.contains(windowClass)) {
            m_byClass.insert(windowClass, entry);
        }
    }
}

} // namespace ostrelle
