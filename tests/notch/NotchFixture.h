#pragma once

#include "core/SettingsHaptics.h"
#include "core/SettingsStore.h"
#include "foundation/DefaultsDatabase.h"
#include "notch/NotchController.h"
#include "notch/NotchViewModel.h"
#include "support/FakeClipboardPort.h"
#include "support/FakePlatform.h"
#include "support/ManualTaskScheduler.h"

#include <QTemporaryDir>
#include <QWidget>

namespace ostrelle {

/// The notch without its views: fresh settings, fakes all around, a clock that only the test moves. The controller is
/// not started.
struct NotchFixture
{
    QTemporaryDir folder;
    ManualTaskScheduler clock;
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
