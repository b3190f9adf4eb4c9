#pragma once

#include "platform/ActivationToken.h"

#include <QObject>

#include <memory>

namespace ostrelle {

/// What the desktop asks of the program: its menus and docks know the program by the name of its desktop entry. Main
/// thread.
class DesktopRequests : public QObject
{
    Q_OBJECT
public:
    /// Answers what is asked of `applicationId`, from a moment later on; after destruction somebody else may. Where the
    /// desktop has no means to ask, nothing happens.
    static std::unique_ptr<DesktopRequests> create(const QString &applicationId, const QStringList &actions);

    using QObject::QObject;

Q_SIGNALS:
    /// The program should show itself.
    void activated(const ActivationToken &token);
    /// One of `actions`, which are those of the desktop entry.
    void actionRequested(const QString &action, const ActivationToken &token);
};

} // namespace ostrelle
