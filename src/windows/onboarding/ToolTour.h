#pragma once

#include "foundation/Task.h"
#include "notch/controls/AnimatedNumber.h"
#include "records/KestroModule.h"

#include <QPropertyNotifier>
#include <QWidget>

namespace ostrelle {

class SettingsStore;
class StepHeader;
class TaskScheduler;
class ToolCard;
class ToolPicker;

/// The tools one after the other, each with what it does and a switch that shows or hides it in the notch. It goes on
/// by itself until the user picks a tool.
class ToolTour : public QWidget
{
    Q_OBJECT
public:
    /// What outlives the page.
    struct Progress
    {
        int index = 0; ///< in kAllModules
        bool isAuto = true;
    };

    ToolTour(const ControlContext &context, SettingsStore &settings, TaskScheduler &scheduler, Progress &progress,
             QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    KestroModule tool() const;
    void advance();
    void show(int index);
    void showState();
    void setShown(bool isShown);

    ControlContext m_context;
    SettingsStore &m_settings;
    TaskScheduler &m_scheduler;
    Progress &m_progress;
    [[maybe_unused]] StepHeader &m_header; ///< made first: from it Tab leads to the controls
    ToolCard &m_card;
    ToolPicker &m_picker;
    Task m_auto;
    QPropertyNotifier m_watch;
};

} // namespace ostrelle
