#include "platform/freedesktop/AutostartEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>
#include <QStandardPaths>

#include <optional>
#include <utility>

namespace ostrelle {

namespace {

constexpr qint64 kLargestEntry = 64 * 1024;

using Keys = QHash<QString, QString>;

/// The keys of the group [Desktop Entry].
Keys keysOf(const QByteArray &content)
{
    Keys keys;
    bool isInGroup = false;
    for (const QString &line : QString::fromUtf8(content).split(u'\n')) {
        const QString text = line.trimmed();
        if (text.startsWith(u'[')) {
            isInGroup = text == QStringLiteral("[Desktop Entry]");
        } else if (const qsizetype equals = text.indexOf(u'='); isInGroup && equals > 0 && !text.startsWith(u'#')) {
            keys.insert(text.left(equals).trimmed(), text.mid(equals + 1).trimmed());
        }
    }
    return keys;
}

bool namesThisDesktop(const QString &list)
{
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    for (const QString &name : list.split(u';', Qt::SkipEmptyParts)) {
        if (desktops.contains(name)) {
            return true;
        }
    }
    return false;
}

bool isSwitchedOff(const Keys &keys)
{
    // Written by the sessions' own settings: the second one by GNOME and its relatives, the third by MATE's.
    return keys.value(QStringLiteral("Hidden")) == QStringLiteral("true") ||
           keys.value(QStringLiteral("X-GNOME-Autostart-enabled")) == QStringLiteral("false") ||
           keys.value(QStringLiteral("X-MATE-Autostart-enabled")) == QStringLiteral("false") ||
           (keys.contains(QStringLiteral("OnlyShowIn")) &&
            !namesThisDesktop(keys.value(QStringLiteral("OnlyShowIn")))) ||
           namesThisDesktop(keys.value(QStringLiteral("NotShowIn")));
}

/// As the Exec key wants it: in quotes, with four characters escaped, and once more as any string of a desktop file.
QString quoted(const QString &path)
{
    QString text;
    for (const QChar character : path) {
        if (QStringLiteral("\"`$\\").contains(character)) {
            text += u'\\';
        }
        text += character;
    }
    text.replace(u'\\', QStringLiteral("\\\\"));
    text.replace(u'%', QStringLiteral("%%"));
    return u'"' + text + u'"';
}

} // namespace

AutostartEntry::AutostartEntry(QString applicationId, QString command)
    : m_applicationId(std::move(applicationId))
    , m_command(std::move(command))
{
}

QString AutostartEntry::fileName() const
{
    return QStringLiteral("autostart/") + m_applicationId + QStringLiteral(".desktop");
}

QString AutostartEntry::path() const
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' + fileName();
}

LoginItem::Status AutostartEntry::status() const
{
    const QString found = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, fileName());
    QFile file(found);
    if (found.isEmpty()) {
        return LoginItem::Status::NotRegistered;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return LoginItem::Status::NotFound;
    }
    const Keys keys = keysOf(file.read(kLargestEntry));
    if (!keys.contains(QStringLiteral("Exec")) && !keys.contains(QStringLiteral("Hidden"))) {
        return LoginItem::Status::NotFound;
    }
    return isSwitchedOff(keys) ? LoginItem::Status::RequiresApproval : LoginItem::Status::Enabled;
}

QString AutostartEntry::write(const QString &mark) const
{
    QDir().mkpath(QFileInfo(path()).path());
    QSaveFile file(path());
    const QString content =
        QStringLiteral("[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=Ostrelle\n"
                       "Comment=Six small tools, just above your work\n"
                       "Icon=%4\n"
                       "Exec=%1\n"
                       "TryExec=%2\n"
                       "Terminal=false\n"
                       "%3\n")
            .arg(quoted(m_command), QString(m_command).replace(u'\\', QStringLiteral("\\\\")), mark, m_applicationId);
    if (!file.open(QIODevice::WriteOnly) || file.write(content.toUtf8()) < 0 || !file.commit()) {
        return file.errorString();
    }
    return {};
}

QString AutostartEntry::enable() const
{
    return write(QStringLiteral("X-GNOME-Autostart-enabled=true"));
}

QString AutostartEntry::refuse() const
{
    return write(QStringLiteral("Hidden=true"));
}

QString AutostartEntry::remove() const
{
    QFile file(path());
    if (file.exists() && !file.remove()) {
        return file.errorString();
    }
    // One of the machine's is still there, and only one of the user's own can hide it.
    return status() == LoginItem::Status::Enabled ? refuse() : QString();
}

} // namespace ostrelle
