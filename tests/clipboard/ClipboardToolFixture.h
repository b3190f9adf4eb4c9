#pragma once

#include "clipboard/ClipboardService.h"
#include "core/SettingsStore.h"
#include "foundation/DefaultsDatabase.h"
#include "notch/FrameClock.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ControlContext.h"
#include "records/ClipboardStore.h"
#include "records/RecordText.h"
#include "support/FakeClipImages.h"
#include "support/FakeClipboardPort.h"
#include "support/FakeDesktopAppearance.h"
#include "support/FakeFileIcons.h"
#include "support/FakeHaptics.h"
#include "support/FakePopups.h"
#include "support/ManualTaskScheduler.h"

#include <QDateTime>
#include <QTemporaryDir>

#include <optional>

namespace ostrelle {

/// What the clipboard tool needs, around a history that a test writes down.
struct ClipboardToolFixture
{
    struct Seed
    {
        ClipItem item;
        QByteArray image;
    };

    /// Starts the service with these items, newest capture first.
    void start(const QList<Seed> &newestFirst)
    {
        {
            ClipboardStore writer(folder.path());
            writer.load();
            for (auto seed = newestFirst.crbegin(); seed != newestFirst.crend(); ++seed)
                writer.insertAtTop(seed->item, seed->image);
            writer.close();
        }
        store.emplace(folder.path());
        service.emplace(settings, port, *store, clock, images);
        service->finishLoading();
    }

    QStringList texts() const
    {
        QStringList result;
        for (const ClipItem &item : service->items())
            result.append(item.text.value_or(QString()));
        return result;
    }

    /// How often the service put something on the clipboard.
    qint64 useCount() const { return port.changeCount() - firstChange; }

    const ClipItem &find(const QString &text) const { return service->items().at(texts().indexOf(text)); }

    QTemporaryDir folder;
    ManualTaskScheduler clock;
    DefaultsDatabase database{folder.filePath(QStringLiteral("defaults.json"))};
    SettingsStore settings{database};
    FakeDesktopAppearance desktop;
    NotchAppearance appearance{settings, desktop};
    FrameClock frames{clock};
    ControlContext context{.appearance = appearance, .clock = frames};
    FakeHaptics haptics;
    FakeFileIcons icons;
    FakePopups popups;
    FakeClipboardPort port{clock};
    FakeClipImages images{clock};
    const qint64 firstChange = port.changeCount();
    std::optional<ClipboardStore> store;
    std::optional<ClipboardService> service;
};

/// An item copied `age` seconds ago.
inline ClipboardToolFixture::Seed clip(ClipItem::Kind kind, double age)
{
    ClipItem item;
    item.id = QUuid::createUuid();
    item.kind = kind;
    item.date = referenceDate(QDateTime::currentMSecsSinceEpoch()) - age;
    return {.item = item, .image = {}};
}

inline ClipboardToolFixture::Seed textClip(const QString &text, double age = 0)
{
    ClipboardToolFixture::Seed seed = clip(ClipItem::Kind::Text, age);
    seed.item.text = text;
    return seed;
}

inline ClipboardToolFixture::Seed pinnedClip(const QString &text, double age = 0)
{
    ClipboardToolFixture::Seed seed = textClip(text, age);
    seed.item.pinned = true;
    return seed;
}

inline ClipboardToolFixture::Seed imageClip(const QByteArray &bytes, double age = 0)
{
    ClipboardToolFixture::Seed seed = clip(ClipItem::Kind::Image, age);
    seed.item.image = ClipImage{.type = QStringLiteral("public.png"), .byteSize = bytes.size(), .pixelSize = {}};
    seed.image = bytes;
    return seed;
}

} // namespace ostrelle
