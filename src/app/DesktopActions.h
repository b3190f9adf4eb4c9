#pragma once

#include <memory>

namespace ostrelle {

class DesktopRequests;
class RequestRouter;
class ShortcutActions;

/// Lets the desktop ask for what the actions of the desktop entry do, as commands and shortcuts do it. Both arguments
/// outlive the answer.
std::unique_ptr<DesktopRequests> answerDesktop(const RequestRouter &router, ShortcutActions &shortcuts);

} // namespace ostrelle
