#pragma once

#include <functional>
#include <memory>

namespace ostrelle {

class DesktopRequests;
class RequestRouter;
class ShortcutActions;
struct ActivationToken;

/// What the desktop asks for that no command and no shortcut does in the same way.
struct DesktopHandlers
{
    std::function<void(const ActivationToken &token)> activate; ///< as a menu of programs does
    std::function<void(const ActivationToken &token)> openSettings;
};

/// Lets the desktop ask for what the actions of the desktop entry do. `router` and `shortcuts` outlive the answer.
std::unique_ptr<DesktopRequests> answerDesktop(const RequestRouter &router, ShortcutActions &shortcuts,
                                               const DesktopHandlers &handlers);

} // namespace ostrelle
