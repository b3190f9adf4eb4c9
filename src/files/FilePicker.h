#pragma once

#include "platform/FileChooser.h"

#include <QPointer>

#include <functional>

namespace ostrelle {

class ForegroundSession;
class NotchController;

/// Lets the user choose files in the desktop's chooser; the notch stays open meanwhile. Main thread.
class FilePicker : public QObject
{
    Q_OBJECT
public:
    /// When the notch may close by itself again after nothing was chosen. After a choice it stays a moment longer.
    enum class AfterCancel { CollapseAtOnce, CollapseLater };

    FilePicker(FileChooser &chooser, ForegroundSession &foreground, NotchController &controller,
               QObject *parent = nullptr);

    /// Answers once, when the chooser has closed, with what was chosen; nothing when it was cancelled. Takes the place
    /// of another's open chooser; while this `owner` is choosing already its chooser comes to the front, and this call
    /// is not answered. No answer when the owner is gone by then.
    void pick(const FileChoice &choice, QObject *owner, AfterCancel afterCancel,
              std::function<void(const QStringList &paths)> completion);

private:
    FileChooser &m_chooser;
    ForegroundSession &m_foreground;
    NotchController &m_controller;
    int m_openCount = 0;
    QPointer<QObject> m_owner; ///< of the chooser that is open
};

} // namespace ostrelle
