#pragma once

#include "files/FileFacts.h"
#include "files/FileLookUp.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QSet>
#include <QString>

#include <optional>

namespace ostrelle {

/// The way along one path, component by component and through links, to what stands at its end. It is interrupted
/// wherever it enters another mount, so that each piece of it can be gone by whoever may hang in that mount.
class PathWalk
{
public:
    /// Mount points; the root counts as one in any case.
    using Mounts = QSet<QByteArray>;

    explicit PathWalk(const QString &path);

    const QString &path() const { return m_path; }
    /// The mount in which the next question would be asked.
    QByteArray nextMount(const Mounts &mounts) const;
    /// Goes on as long as the way stays in `mount`; the facts when it is at its end.
    std::optional<FileFacts> advance(const QByteArray &mount, const Mounts &mounts, const FileLookUp &lookUp);

private:
    QByteArray next() const { return m_done + '/' + m_left.first(); }
    bool dropDots();
    std::optional<FileFacts> take(const FileLookUp::Entry &entry);
    bool follow(const QByteArray &target);

    QString m_path;
    QByteArray m_done; ///< a folder, without links; empty for the root
    QByteArrayList m_left;
    int m_linkCount = 0;
    bool m_isLink = false;
};

} // namespace ostrelle
