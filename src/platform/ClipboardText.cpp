#include "platform/ClipboardText.h"

#include "platform/ClipboardPort.h"

#include <utility>

namespace ostrelle {

void readClipboardText(ClipboardPort &port, QObject *context, std::function<void(const QString &text)> take)
{
    port.snapshot(context, [&port, context, take = std::move(take)](const std::optional<ClipboardSnapshot> &snapshot) {
        if (!snapshot || !snapshot->formats.contains(ClipboardFormat::Text))
            return;
        port.read(snapshot->changeCount, ClipboardFormat::Text, context, [take](const ClipboardContent &content) {
            if (content.outcome == ClipboardContent::Outcome::Read)
                take(content.text);
        });
    });
}

} // namespace ostrelle
