#pragma once

#include "files/PresenceQueue.h"
#include "records/JsonListStore.h"
#include "records/ListStep.h"
#include "records/ListUndo.h"
#include "records/Project.h"

#include <QBindable>
#include <QList>
#include <QObject>
#include <QProperty>
#include <QStringList>
#include <QUuid>

#include <functional>
#include <optional>

namespace ostrelle {

class FilePicker;
class FilePresence;
class Haptics;
class NotchController;

/// The pinned folders in the user's order, no path twice. A folder that is gone stays listed. Main thread; nothing here
/// waits.
class ProjectsService : public QObject
{
    Q_OBJECT
public:
    /// How a move() counts for undo(): the steps of one drag are undone together.
    enum class Step { First, Further };

    ProjectsService(JsonListStore<Project> &store, FilePresence &presence, Haptics &haptics, FilePicker &picker,
                    NotchController &controller, QObject *parent = nullptr);

    const QList<Project> &projects() const;
    /// For observing.
    QBindable<QList<Project>> bindableProjects();

    /// Lets the user choose folders in the desktop's chooser and pins them; the notch stays open meanwhile and shows
    /// the projects afterwards. Nothing while a chooser is open already.
    void promptToAdd();
    /// Appends the folders among `paths` (absolute, any form) that are not listed yet. Before it returns when their
    /// kinds are known, else as soon as they are, in any case after the additions before it; then `added` is told their
    /// number.
    void add(const QStringList &paths, const std::function<void(int count)> &added = {});
    /// The same for paths that the caller has found to be folders: before it returns. Their number.
    int addFolders(const QStringList &folders);
    /// Trims `name`; empty gives the folder's own name back.
    void rename(const QUuid &id, const QString &name);
    /// Takes the entries at `offsets` out and puts them back before the one that was at `destination`; the number of
    /// entries means the end.
    void move(const QList<int> &offsets, int destination, Step step = Step::First);
    void remove(const QUuid &id);

    /// Answers when the list as it is now is on the disk, or that it cannot be written. Not when `context` is gone.
    void whenSaved(const QObject *context, std::function<void(bool isSaved)> answer);

    /// Whether the last remove() or move() can be taken back: until lapse().
    bool canUndo() const;
    void undo();
    /// What was removed or moved can no longer be taken back (the panel closed).
    void lapse();

Q_SIGNALS:
    /// How the list became what projects() now is.
    void itemsChanged(const QList<ostrelle::ListStep> &steps);

private:
    void takeChosen(const QStringList &folders);
    bool put(const QList<Project> &projects);

    JsonListStore<Project> &m_store;
    Haptics &m_haptics;
    FilePicker &m_picker;
    NotchController &m_controller;
    PresenceQueue m_additions; ///< that are still being judged
    std::optional<ListUndo<Project>> m_undo;
    Q_OBJECT_BINDABLE_PROPERTY(ProjectsService, QList<Project>, m_projects)
};

} // namespace ostrelle
