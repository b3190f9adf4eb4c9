#include "DefaultApplication.h"

#include <QDir>
#include <QFile>

namespace ostrelle {

namespace {

void write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(content);
    }
}

} // namespace

DefaultApplication::DefaultApplication()
{
    const QString script = m_folder.filePath(QStringLiteral("viewer"));
    const QByteArray folder = QFile::encodeName(m_folder.path());
    write(script, "#!/bin/sh\ncd " + folder +
                      "\n"
                      "tr '\\0' '\\n' < /proc/$$/environ > environment\n"
                      "descriptors=$(for fd in /proc/$$/fd/*; do readlink \"$fd\"; done)\n"
                      "echo \"$descriptors\" > descriptors\n"
                      "printf '%s\\0' \"$1\" >> opened\n");
    QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    write(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/applications/test-viewer.desktop"),
          "[Desktop Entry]\nType=Application\nName=Viewer\nMimeType=text/plain;inode/directory;\nExec=" +
              QFile::encodeName(script) + " %f\n");
    write(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/applications/test-browser.desktop"),
          "[Desktop Entry]\nType=Application\nName=Browser\nMimeType=x-scheme-handler/https;\nExec=" +
              QFile::encodeName(script) + " %u\n");
    write(qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/mimeapps.list"),
          "[Default Applications]\ntext/plain=test-viewer.desktop\ninode/directory=test-viewer.desktop\n"
          "x-scheme-handler/https=test-browser.desktop\n");
}

QByteArrayList DefaultApplication::lines(const QString &file, char separator) const
{
    QFile read(m_folder.filePath(file));
    QByteArrayList lines = read.open(QIODevice::ReadOnly) ? read.readAll().split(separator) : QByteArrayList();
    lines.removeAll(QByteArray());
    return lines;
}

QStringList DefaultApplication::opened() const
{
    QStringList paths;
    for (const QByteArray &path : lines(QStringLiteral("opened"), '\0')) {
        paths << QFile::decodeName(path);
    }
    return paths;
}

QByteArray DefaultApplication::variable(const QByteArray &name) const
{
    for (const QByteArray &line : lines(QStringLiteral("environment"), '\n')) {
        if (line.startsWith(name + '=')) {
            return line.sliced(name.size() + 1);
        }
    }
    return {};
}

QByteArrayList DefaultApplication::descriptors() const
{
    return lines(QStringLiteral("descriptors"), '\n');
}

} // namespace ostrelle
