#pragma once

#include "files/DragInspection.h"
#include "records/KestroModule.h"

#include <QList>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QSet>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace ostrelle {

class FileDrags;
class NotchController;
class NotchViewModel;
class SettingsStore;
class TaskScheduler;
class ToolRegistry;
class ToolView;

/// The tools that can take what is dragged, in the order of their landing zones: the shelf takes everything, a folder
/// goes to the projects and never to the inspectors.
QList<KestroModule> dropDestinations(const QSet<KestroModule> &enabled, const DragContents &contents);

/// What happens to files that are dragged over the notch. On the closed notch they are offered landing zones and handed
/// to the chosen tool, which is then shown; over an open tool they are that tool's. Main thread.
class NotchDropDelegate : public QObject
{
    Q_OBJECT
public:
    struct Surroundings
    {
        FileDrags &drags;
        NotchController &controller;
        SettingsStore &settings;
        const ToolRegistry &tools;
        TaskScheduler &scheduler;
        FactsQuestion facts;
        std::function<ToolView *()> openTool; ///< the tool on screen, or null
    };

    explicit NotchDropDelegate(Surroundings surroundings, QObject *parent = nullptr);
    ~NotchDropDelegate() override;

private:
    /// The drag that is over the panel.
    struct Drag
    {
        QPointF position;
        std::optional<QStringList> paths;
        std::unique_ptr<DragInspection> inspection;
        std::optional<QList<KestroModule>> destinations;
        QPointer<ToolView> tool; ///< that was asked
        bool toolAccepts = false;
    };

    void entered(const QPointF &position);
    void filesKnown(const QStringList &paths);
    void moved(const QPointF &position);
    void left();
    void dropped(const QPointF &position, const QStringList &paths);

    void consider();
    void offerToTool();
    void releaseTool();
    bool isPanelOpen() const;
    bool isOverSurface() const;
    bool isShelfEnabled() const;
    std::optional<KestroModule> target() const;
    void deliver(const QStringList &paths, KestroModule module);

    Surroundings m_around;
    NotchViewModel &m_viewModel;
    std::optional<Drag> m_drag;
};

} // namespace ostrelle
