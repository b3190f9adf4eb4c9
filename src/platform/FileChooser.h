#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

namespace ostrelle {

/// What the user is asked to choose.
struct FileChoice
{
    enum class Kind { File, Folders };

    Kind kind = Kind::File;   ///< one file, or any number of folders
    QString message;          ///< what the choice is for; the chooser's title
    QString acceptLabel;      ///< the confirming button; empty: the chooser's own
    QStringList mimeTypes;    ///< of files; "image/*" is allowed; empty: every kind
    QStringList namePatterns; ///< "*.caf": names that are allowed besides
    QString kindName;         ///< what such files are called, as "Images"; shown where the kinds are
};

/// The desktop's chooser of files and folders, non-modal: the panel stays usable under it. One at a time: a choice
/// takes the place of an open one, whose answer, none, then comes together with its own. Main thread.
class FileChooser
{
public:
    virtual ~FileChooser() = default;

    /// Answers once, when the chooser has closed, with absolute local paths; none when it was cancelled or could not be
    /// shown. No answer when `context` is gone by then.
    virtual void choose(const FileChoice &choice, QObject *context, std::function<void(QStringList)> answer) = 0;
    /// Brings the open chooser before the other windows; it may begin anew by that. Nothing when none is open.
    virtual void raise() = 0;
};

} // namespace ostrelle
