#pragma once

namespace ostrelle {

class RequestRouter;
class UpdateService;

/// "update.check": a manual check, answered when it has ended.
void addUpdateRequests(RequestRouter &router, UpdateService &updates);

} // namespace ostrelle
