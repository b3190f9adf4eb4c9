#pragma once

#include <memory>

namespace ostrelle {

class DesktopRequests;
class RequestRouter;

/// Lets the desktop ask for what the actions of the desktop entry do: each is a request as a command would send it.
/// The router outlives the answer.
std::unique_ptr<DesktopRequests> answerDesktop(const RequestRouter &router);

} // namespace ostrelle
