#pragma once

#include "StandInFiles.h"

#include "core/SettingsHaptics.h"
#include "core/SettingsStore.h"
#include "files/AudioPreview.h"
#include "files/FilePresence.h"
#include "foundation/DefaultsDatabase.h"
#include "notch/NotchController.h"
#include "notch/NotchViewModel.h"
#include "support/FakeClipboardPort.h"
#include "support/FakePlatform.h"
#include "support/ManualTaskScheduler.h"

#include <QProperty>
#include <QTemporaryDir>
#include <QWidget>

namespace ostrelle {

/// A player that only says what it plays.
class SilentPreview final : public AudioPreview
{
    Q_OBJECT
public:
    bool isAvailable() const override { return true; }
    QString playingPath() const override { return m_playingPath; }
    QBindable<QString> bindablePlayingPath() override { return &m_playingPath; }
    void toggle(const QString &path) override { m_playingPath = m_playingPath.value() == path ? QString() : path; }
    void stop(const QString &path) override
    {
        if (m_playingPath.value() == path)
            stop();
    }
    void stop() override { m_playingPath = QString(); }

private:
    QProperty<QString> m_playingPath;
};

/// What the file services need: a data folder, files in memory, a clock that only the test moves, a notch.
struct FilesFixture
{
    QTemporaryDir folder;
    StandInFiles files;
    ManualTaskScheduler clock;
    FilePresence presence{clock, files.lookUp()};
    SilentPreview preview;
    DefaultsDatabase database{folder.filePath(QStringLiteral("defaults.json"))};
    SettingsStore settings{database};
    FakeClipboardPort clipboard{clock};
    FakePlatform platform{clipboard};
    SettingsHaptics haptics{settings, platform.haptics()};
    NotchViewModel viewModel{settings, clock, platform.dragSense(), haptics};
    QWidget panel;
    NotchController controller{viewModel, settings, clock, platform};

    int ticks() { return platform.haptics().tickCount(); }
};

} // namespace ostrelle
