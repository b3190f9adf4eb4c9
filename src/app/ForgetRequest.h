#pragma once

namespace ostrelle {

class RequestRouter;
class Services;

/// "forget.all": erases what the user has copied, staged, shown and picked, and answers how much it was when it has
/// left the disk.
void addForgetRequest(RequestRouter &router, Services &services);

} // namespace ostrelle
