#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

namespace ostrelle {

/// Files that go to or come from a sandboxed program by a key (org.freedesktop.portal.FileTransfer). Main thread.
class PortalFileTransfer : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Answers later, with no paths on any failure, unless `context` is gone by then; at the latest after two seconds.
    void retrieve(const QString &key, QObject *context, std::function<void(QStringList)> answer);

    /// Answers later with a key for these files, unless `context` is gone by then; with none when no portal runs. The
    /// files are added in the background, for as long as that takes: whoever asks for them too early gets the first.
    void offer(const QStringList &paths, QObject *context, std::function<void(QString)> answer);
};

} // namespace ostrelle
