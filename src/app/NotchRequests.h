#pragma once

#include <QJsonObject>

#include <functional>

namespace ostrelle {

class NotchController;
class RequestRouter;

/// "open" (with "tool" and the desktop's "token" for the keyboard), "close", "toggle", "ping", "status" (answered by
/// `status`), "quit" (calls `quit` from the event loop, after the answer is on its way).
void addNotchRequests(RequestRouter &router, NotchController &controller, std::function<QJsonObject()> status,
                      std::function<void()> quit);

/// "welcome": calls `open`, which shows the window of the first run.
void addWelcomeRequest(RequestRouter &router, const std::function<void()> &open);

} // namespace ostrelle
