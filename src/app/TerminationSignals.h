#pragma once

#include "foundation/FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace ostrelle {

/// Turns SIGTERM, SIGINT and SIGHUP into a signal of the event loop. One instance per process.
class TerminationSignals : public QObject
{
    Q_OBJECT
public:
    explicit TerminationSignals(QObject *parent = nullptr);

Q_SIGNALS:
    void received();

private:
    FileDescriptor m_event;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace ostrelle
