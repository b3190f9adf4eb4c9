#pragma once

namespace ostrelle {

class ClipboardService;
class RequestRouter;

/// "clipboard.list", "clipboard.copy", "clipboard.pin", "clipboard.delete", "clipboard.clear". Erasures are final and
/// off the disk before they are answered.
void addClipboardRequests(RequestRouter &router, ClipboardService &clipboard);

} // namespace ostrelle
