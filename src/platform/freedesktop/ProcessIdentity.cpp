#include "platform/freedesktop/ProcessIdentity.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace ostrelle {

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(64 * 1024) : QByteArray();
}

/// systemd escapes "-" within a component as "\x2d".
QString unescaped(QString text)
{
    static const QRegularExpression escape(QStringLiteral(R"(\\x([0-9a-fA-F]{2}))"));
    for (QRegularExpressionMatch match = escape.match(text); match.hasMatch(); match = escape.match(text)) {
        text.replace(match.capturedStart(), match.capturedLength(), QChar(match.captured(1).toUShort(nullptr, 16)));
    }
    return text;
}

} // namespace

ProcessIdentity ProcessIdentity::ofProcess(qint64 pid)
{
    const QString folder = QStringLiteral("/proc/%1/").arg(pid);
    const QByteArray cgroup = contentOf(folder + QStringLiteral("cgroup"));
    ProcessIdentity identity;
    identity.flatpakId = flatpakIdIn(contentOf(folder + QStringLiteral("root/.flatpak-info")));
    identity.snapName = snapNameIn(contentOf(folder + QStringLiteral("attr/current")));
    if (identity.snapName.isEmpty()) {
        identity.snapName = snapNameIn(cgroup);
    }
    identity.scopeId = scopeIdIn(cgroup);
    identity.executable = QFileInfo(QFile::symLinkTarget(folder + QStringLiteral("exe"))).fileName();
    return identity;
}

QString ProcessIdentity::flatpakIdIn(const QByteArray &flatpakInfo)
{
    bool isInGroup = false;
    for (const QByteArray &rawLine : flatpakInfo.split('\n')) {
        const QByteArray line = rawLine.trimmed();
        if (line.startsWith('[')) {
            isInGroup = line == "[Application]" || line == "[Runtime]";
        } else if (isInGroup && line.startsWith("name=")) {
            return QString::fromUtf8(line.sliced(5).trimmed());
        }
    }
    return {};
}

QString ProcessIdentity::snapNameIn(const QByteArray &text)
{
    static const QRegularExpression snap(QStringLiteral(R"((?:^|/)snap\.([a-z0-9-]+)[._])"),
                                         QRegularExpression::MultilineOption);
    return snap.match(QString::fromUtf8(text)).captured(1);
}

QString ProcessIdentity::scopeIdIn(const QByteArray &cgroup)
{
    // The id itself has its dashes escaped, so a plain dash separates the parts.
    static const QRegularExpression scope(
        QStringLiteral(R"(/app-(?:[^-/]+-)?([^-/@]+)(?:-[^-/]+\.scope|(?:@[^/]*)?\.service)\s*$)"),
        QRegularExpression::MultilineOption);
    return unescaped(scope.match(QString::fromUtf8(cgroup)).captured(1));
}

} // namespace ostrelle
