#pragma once

#include <QByteArray>
#include <QString>

namespace ostrelle {

/// What the kernel and the sandboxes tell about a process. Empty where they tell nothing.
struct ProcessIdentity
{
    QString flatpakId;
    QString snapName;
    QString scopeId;    ///< application id in the name of its systemd scope or service
    QString executable; ///< file name of the running program

    /// Reads /proc; blocking, any thread.
    static ProcessIdentity ofProcess(qint64 pid);

    /// `[Application] name=` (or `[Runtime]`, which extensions have) of a .flatpak-info file.
    static QString flatpakIdIn(const QByteArray &flatpakInfo);
    /// NAME of an AppArmor label or cgroup path component "snap.NAME.APP…".
    static QString snapNameIn(const QByteArray &text);
    /// The unescaped ID in "app[-LAUNCHER]-ID-RANDOM.scope" or "app[-LAUNCHER]-ID[@RANDOM].service" (systemd's naming
    /// for desktop environments).
    static QString scopeIdIn(const QByteArray &cgroup);
};

} // namespace ostrelle
