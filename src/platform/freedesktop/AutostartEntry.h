#pragma once

#include "platform/LoginItem.h"

#include <QString>
#include <QStringList>

namespace ostrelle {

/// The autostart entry of one program, as the desktop application autostart specification has it: a desktop file in
/// $XDG_CONFIG_HOME/autostart, or in a folder of $XDG_CONFIG_DIRS, where the first file of its name is the one that
/// counts. The file is small and read whenever it is asked for.
class AutostartEntry
{
public:
    /// The file and the icon are named after `applicationId`. `command` is the path of the program's executable.
    AutostartEntry(QString applicationId, QString command);

    LoginItem::Status status() const;
    /// Each answers what went wrong, in words, or nothing.
    QString enable() const;
    /// The entry stays and is marked as switched off.
    QString refuse() const;
    QString remove() const;

private:
    QString fileName() const;
    QString path() const;
    QString write(const QString &mark) const;

    QString m_applicationId;
    QString m_command;
};

} // namespace ostrelle
