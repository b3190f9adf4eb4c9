#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

namespace ostrelle {

/// Files that a sandboxed program hands over by a key (org.freedesktop.portal.FileTransfer, RetrieveFiles). Main
/// thread.
class PortalFileTransfer : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Answers later, with no paths on any failure, unless `context` is gone by then; at the latest after two seconds.
    void retrieve(const QString &key, QObject *context, std::function<void(QStringList)> answer);
};

} // namespace ostrelle
