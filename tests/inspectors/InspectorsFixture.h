#pragma once

#include "FakeFactSource.h"
#include "FilesFixture.h"
#include "StandInThumbnails.h"
#include "inspectors/AudioInspector.h"
#include "inspectors/ImageInspector.h"

#include <QTest>

namespace ostrelle {

/// Both inspectors on made-up files.
struct InspectorsFixture : FilesFixture
{
    FakeFactSource facts;
    StandInThumbnails thumbnails;
    FileInspector::Surroundings around{database, presence, haptics, clock};
    AudioInspector audio{around, facts, preview};
    ImageInspector image{around, facts, thumbnails};

    static AudioInfo audioInfo(const QString &path, std::optional<double> bpm = std::nullopt)
    {
        AudioInfo info;
        info.name = path.section(u'/', -1);
        info.format = path.section(u'.', -1).toUpper();
        info.duration = 205;
        info.sampleRate = 48000;
        info.channels = 2;
        info.bitrateKbps = 2304;
        info.bitDepth = 24;
        info.byteSize = 59'000'000;
        info.bpm = bpm;
        return info;
    }
    static ImageInfo imageInfo(const QString &path)
    {
        ImageInfo info;
        info.name = path.section(u'/', -1);
        info.pixelWidth = 3840;
        info.pixelHeight = 2160;
        info.format = QStringLiteral("PNG");
        info.byteSize = 11'400'000;
        info.colorSpace = QStringLiteral("sRGB IEC61966-2.1");
        info.bitDepth = 8;
        info.dpi = 144;
        info.hasAlpha = true;
        return info;
    }

    /// A file that is there and can be read; its path.
    QString addAudio(const QString &name, std::optional<double> bpm = std::nullopt)
    {
        const QString path = QStringLiteral("/a/") + name;
        files.add(path.toUtf8());
        facts.set(path, audioInfo(path, bpm));
        return path;
    }
    QString addImage(const QString &name)
    {
        const QString path = QStringLiteral("/a/") + name;
        files.add(path.toUtf8());
        facts.set(path, imageInfo(path));
        return path;
    }
    /// Has it shown.
    void showAudio(const QString &path)
    {
        audio.load(path);
        facts.answer(path);
    }
    void showImage(const QString &path)
    {
        image.load(path);
        facts.answer(path);
    }

    static QStringList names(RecentFiles &recents)
    {
        QStringList names;
        for (const RecentFile &file : recents.items())
            names.append(file.name);
        return names;
    }
};

} // namespace ostrelle
