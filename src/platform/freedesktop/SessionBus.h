#pragma once

#include <QDBusConnection>

#include <functional>

class QObject;

namespace ostrelle {

/// The session bus, reached without making anybody wait.
namespace sessionBus {

/// Connects on a background thread and calls `use` on the context's thread from its event loop, unless `context` is
/// gone by then. Nothing is called when there is no bus; none is started.
void whenConnected(QObject *context, std::function<void(QDBusConnection)> use, std::function<void()> otherwise = {});

} // namespace sessionBus

} // namespace ostrelle
