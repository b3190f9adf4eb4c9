#pragma once

#include "foundation/TaskScheduler.h"
#include "platform/FileChooser.h"

#include <QPointer>

#include <memory>
#include <vector>

namespace ostrelle {

class ClipboardPort;
class PortalFileRequest;
class ToolkitFileDialog;

/// The portal's chooser; the toolkit's own dialog where the portal is missing, too old or does not answer.
class PortalFileChooser final : public QObject, public FileChooser
{
    Q_OBJECT
public:
    /// Both outlive this.
    PortalFileChooser(const TaskScheduler &scheduler, ClipboardPort &clipboard, QObject *parent = nullptr);
    ~PortalFileChooser() override;

    void choose(const FileChoice &choice, QObject *context, std::function<void(QStringList)> answer) override;
    void raise() override;

private:
    struct Waiting
    {
        QPointer<QObject> context;
        std::function<void(QStringList)> answer;
    };

    void askPortal();
    void askToolkit();
    void finish(const QStringList &paths);

    const TaskScheduler &m_scheduler;
    ClipboardPort &m_clipboard;
    std::unique_ptr<PortalFileRequest> m_request;
    std::unique_ptr<ToolkitFileDialog> m_dialog;
    FileChoice m_choice; ///< the open one
    MonotonicTime m_asked{};
    int m_turn = 0;                 ///< counts the choices, so that what an older one still awaits is passed over
    std::vector<Waiting> m_waiting; ///< the open choice last, before it those whose place it took
};

} // namespace ostrelle
