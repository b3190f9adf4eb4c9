#pragma once

#include "StandInFiles.h"

#include "core/SettingsHaptics.h"
#include "core/SettingsStore.h"
#include "files/FilePresence.h"
#include "foundation/DefaultsDatabase.h"
#include "notch/NotchController.h"
#include "notch/NotchViewModel.h"
#include "support/FakeAudioPreview.h"
#include "support/FakeClipboardPort.h"
#include "support/FakePlatform.h"
#include "support/ManualTaskScheduler.h"

#include <QTemporaryDir>
#include <QWidget>

namespace ostrelle {

/// What the file services need: a data folder, files in memory, a clock that only the test moves, a notch.
struct FilesFixture
{
    QTemporaryDir folder;
    StandInFiles files;
    ManualTaskScheduler clock;
    FilePresence presence{clock, files.lookUp()};
    FakeAudioPreview preview;
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
