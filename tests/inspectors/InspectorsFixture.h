#pragma once

#include "FakeFactSource.h"
#include "FilesFixture.h"
#include "StandInThumbnails.h"
#include "files/RecentThumbnails.h"
#include "inspectors/AudioInspector.h"
#include "inspectors/ImageInspector.h"
#include "inspectors/InspectorView.h"
#include "notch/FrameClock.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/MetadataRow.h"

#include <QAbstractButton>
#include <QApplication>
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

/// What a view of them needs besides.
struct ToolFixture : InspectorsFixture
{
    FrameClock frames{clock};
    NotchAppearance appearance{settings, platform.appearance()};
    ControlContext context{appearance, frames};
    RecentThumbnails recentThumbnails{thumbnails};
    InspectorView::Surroundings surroundings{picker,  presence,         clipboard, haptics,
                                             preview, recentThumbnails, thumbnails};
    QWidget window;

    /// Shows the view as the panel does, and gives it the focus.
    void show(InspectorView &view)
    {
        view.setParent(&window);
        resize(view);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        view.appeared();
        settle();
    }
    void resize(InspectorView &view)
    {
        window.resize(588, static_cast<int>(*view.wantedBodyHeight()) - 106);
        view.resize(window.size());
    }
    void settle()
    {
        for (int i = 0; i < 4; ++i) {
            QCoreApplication::processEvents();
            clock.advance(std::chrono::milliseconds(400));
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    /// Asks for the files, so that it is known which are there.
    void findFiles(const QStringList &paths)
    {
        bool isFound = false;
        presence.ask(paths, &window, [&](const QList<FileFacts> &) { isFound = true; });
        QTRY_VERIFY(isFound);
    }
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    /// The button with that tooltip or, where it has none, that name, which is to be seen; null when there is none.
    static QAbstractButton *button(const QWidget &view, const QString &help)
    {
        for (auto *button : view.findChildren<QAbstractButton *>()) {
            const bool isMeant = button->toolTip() == help || button->accessibleName() == help;
            if (isMeant && button->isVisibleTo(&view))
                return button;
        }
        return nullptr;
    }
    /// "label: value" of each row, in order.
    static QStringList rows(const QWidget &view)
    {
        QStringList rows;
        for (const MetadataRow *row : view.findChildren<MetadataRow *>()) {
            if (row->isVisibleTo(&view))
                rows.append(row->label() + QStringLiteral(": ") + row->value());
        }
        return rows;
    }
    /// What the well says.
    static QString message(const QWidget &view)
    {
        QStringList messages;
        for (const EmptyStateView *state : view.findChildren<EmptyStateView *>()) {
            if (state->isVisibleTo(&view))
                messages.append(state->accessibleName());
        }
        return messages.join(u'|');
    }
};

} // namespace ostrelle
