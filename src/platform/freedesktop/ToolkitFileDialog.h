#pragma once

#include "platform/FileChooser.h"

#include <memory>

class QFileDialog;

namespace ostrelle {

class ClipboardPort;

/// One choice through the toolkit's own dialog, for desktops without a portal. Answers once; destroying it closes the
/// dialog, unanswered. Main thread.
class ToolkitFileDialog final : public QObject
{
    Q_OBJECT
public:
    /// The object may be destroyed from inside the answer.
    ToolkitFileDialog(const FileChoice &choice, ClipboardPort &clipboard, std::function<void(QStringList)> answer);
    ~ToolkitFileDialog() override;

    /// Brings it before the other windows.
    void raise();

private:
    std::unique_ptr<QFileDialog> m_dialog;
};

} // namespace ostrelle
