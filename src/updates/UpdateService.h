#pragma once

#include "foundation/RequestHandle.h"
#include "foundation/Task.h"
#include "updates/UpdateDeployment.h"
#include "updates/UpdateState.h"

#include <QBindable>
#include <QDateTime>
#include <QObject>
#include <QProperty>

#include <functional>
#include <optional>
#include <vector>

namespace ostrelle {

class FeedSource;
class SettingsStore;
class TaskScheduler;
struct FeedAnswer;

/// Finds out whether a newer release has been published: by itself while the settings say so, and when asked. Main
/// thread.
class UpdateService : public QObject
{
    Q_OBJECT
public:
    using Release = UpdateRelease;
    using State = UpdateState;
    using Done = std::function<void(const State &state)>;

    /// An automatic check passes over the version that the user skips.
    enum class Check { Automatic, Manual };

    UpdateService(SettingsStore &settings, TaskScheduler &scheduler, FeedSource &source, UpdateDeployment deployment,
                  QObject *parent = nullptr);
    ~UpdateService() override;

    QBindable<State> bindableState();
    State state() const { return m_state.value(); }
    /// The last check that succeeded, in this process.
    const std::optional<QDateTime> &lastCheck() const { return m_lastCheck; }
    QString currentVersion() const;
    const UpdateDeployment &deployment() const { return m_deployment; }

    /// Checks after six seconds and then every six hours while the setting is on; begins anew whenever it is assigned.
    /// Without a feed no check is made by itself.
    void startBackgroundChecks();
    /// Checks once and tells `done` the new state, later. During a check no second one begins: that one's outcome
    /// counts for both, as manual if either is.
    void check(Check kind, Done done = {});
    /// Of the available release: no automatic check offers it any more.
    void skip();

    /// -1, 0 or 1 as version a is older than, equal to or newer than version b. Pieces between dots count as numbers,
    /// missing ones as 0; what is no number comes before 0.
    static int compare(QStringView a, QStringView b);

private:
    bool hasFeed() const;
    void schedule();
    void checkAndWait();
    void finish(const FeedAnswer &answer);
    State outcomeOf(const FeedAnswer &answer);
    void conclude(const State &state);

    SettingsStore &m_settings;
    TaskScheduler &m_scheduler;
    FeedSource &m_source;
    UpdateDeployment m_deployment;
    Q_OBJECT_BINDABLE_PROPERTY(UpdateService, UpdateState, m_state)
    std::optional<QDateTime> m_lastCheck;
    Task m_timerTask;
    int m_round = 0; ///< of schedule(): what a check of an earlier one would wait for is forgotten
    RequestHandle m_request;
    Task m_refusal;
    bool m_isManual = false;
    std::vector<Done> m_waiting;
};

} // namespace ostrelle
