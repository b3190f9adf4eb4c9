#pragma once

#include <QString>

#include <functional>

class QObject;

namespace ostrelle {

class ClipboardPort;

/// Reads the text on the clipboard; no answer where there is none, its owner does not give it, or `context` is gone by
/// then.
void readClipboardText(ClipboardPort &port, QObject *context, std::function<void(const QString &text)> take);

} // namespace ostrelle
