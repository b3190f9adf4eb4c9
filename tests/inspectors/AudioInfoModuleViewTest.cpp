#include "inspectors/AudioInfoModuleView.h"
#include "InspectorsFixture.h"
#include "files/RecentChip.h"
#include "files/RecentFilesStrip.h"
#include "files/RecentRowsView.h"
#include "inspectors/AudioHead.h"
#include "inspectors/SeekBar.h"
#include "notch/controls/DropOverlay.h"
#include "notch/controls/DropWell.h"
#include "notch/controls/PlayBadge.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QLineEdit>
#include <QMouseEvent>
#include <QSignalSpy>

#include <optional>

using namespace ostrelle;
using namespace std::chrono_literals;

class AudioInfoModuleViewTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void wantsTheHeightOfWhatItShows();
    void invitesAndRefuses();
    void saysOverTheFactsThatAnotherFileWasRefused();
    void showsTheFactsInOrder();
    void leavesOutWhatIsNotKnown();
    void showsTheTempoAsItIsFoundOut();
    void aRowStaysWhileTheTempoIsFound();
    void playsAndSeeksInTheHead();
    void letsGoOfTheBarWhenTheSoundEnds();
    void playsByKeysUnlessAControlHasThem();
    void theTabKeyGoesFromTopToBottom();
    void keysGoOnWhenTheLastRecentFileIsForgotten();
    void shakesWhenItCannotBePlayed();
    void copiesAllFacts();
    void offersTheChooserAndTheWayBack();
    void takesDropsAnywhere();
    void undoesForgettingUntilThePanelCloses();
    void comesBackAsItWas();
    void isIdleAtRest();
};

namespace {

struct AudioTool : ToolFixture
{
    std::optional<AudioInfoModuleView> tool;

    AudioTool() { tool.emplace(audio, surroundings, context, nullptr); }
    void start() { show(*tool); }
    AudioInfoModuleView &view() { return *tool; }
    AudioHead &head() { return *view().findChild<AudioHead *>(); }
    SeekBar &bar() { return *view().findChild<SeekBar *>(); }
    PlayBadge &badge() { return *head().findChild<PlayBadge *>(); }
    /// Shows a file that is 205 s long and states a tempo.
    QString showFerry()
    {
        const QString path = addAudio(QStringLiteral("ferry.wav"), 84);
        preview.setLength(path, 205);
        showAudio(path);
        findFiles({path});
        settle();
        resize(view());
        return path;
    }
};

} // namespace

void AudioInfoModuleViewTest::wantsTheHeightOfWhatItShows()
{
    AudioTool fixture;
    fixture.start();
    QSignalSpy changes(&fixture.view(), &ToolView::wantedBodyHeightChanged);
    QCOMPARE(fixture.view().wantedBodyHeight(), 154.0 + 106);
    fixture.showFerry();
    QCOMPARE(fixture.view().wantedBodyHeight(), 212.0 + 82 + 106);
    fixture.view().strip().expansionWanted(true);
    QCOMPARE(fixture.view().wantedBodyHeight(), 486.0);
    fixture.audio.clear();
    QCOMPARE(fixture.view().wantedBodyHeight(), 154.0 + 168 + 106);
    fixture.audio.recents().clear();
    QCOMPARE(fixture.view().wantedBodyHeight(), 154.0 + 106);
    QVERIFY(!fixture.view().strip().isExpanded());
    QCOMPARE(changes.count(), 5);
}

void AudioInfoModuleViewTest::invitesAndRefuses()
{
    AudioTool fixture;
    fixture.start();
    QCOMPARE(AudioTool::message(fixture.view()), QStringLiteral("Drop an audio file here"));
    fixture.audio.load(QStringLiteral("/a/paper.pdf"));
    fixture.clock.advance(1s);
    QCOMPARE(AudioTool::message(fixture.view()), QStringLiteral("That isn't an audio file"));
    const auto states = fixture.view().findChildren<EmptyStateView *>();
    QCOMPARE(states.last()->accessibleDescription(), QStringLiteral("Try WAV, AIFF, MP3, M4A, FLAC or CAF"));
    QCOMPARE(states.last()->content().symbol, QStringLiteral("exclamationmark.triangle"));
    fixture.clock.advance(2s);
    QCOMPARE(AudioTool::message(fixture.view()), QStringLiteral("Drop an audio file here"));
    // Opened in the middle of a refusal, it says so.
    fixture.audio.load(QStringLiteral("/a/paper.pdf"));
    fixture.tool.emplace(fixture.audio, fixture.surroundings, fixture.context, nullptr);
    fixture.start();
    QCOMPARE(AudioTool::message(fixture.view()), QStringLiteral("That isn't an audio file"));
}

void AudioInfoModuleViewTest::saysOverTheFactsThatAnotherFileWasRefused()
{
    AudioTool fixture;
    fixture.start();
    const QString path = fixture.showFerry();
    const auto facts = [&] { return fixture.view().grab(QRect(14, 86, 560, 108)).toImage(); };
    const QImage before = facts();
    fixture.audio.load(QStringLiteral("/a/paper.pdf"));
    const auto pass = [&](std::chrono::milliseconds time) {
        for (; time > 0ms; time -= 100ms)
            fixture.clock.advance(100ms);
    };
    pass(1900ms);
    QCOMPARE(AudioTool::message(fixture.view()), QStringLiteral("That isn't an audio file"));
    QCOMPARE(AudioTool::rows(fixture.view()).size(), 8);
    QVERIFY(facts() != before);
    pass(1s);
    QCOMPARE(AudioTool::message(fixture.view()), QString());
    QCOMPARE(facts(), before);
    // With the file goes the place for it: the well says the same.
    fixture.audio.load(QStringLiteral("/a/paper.pdf"));
    fixture.audio.clear();
    pass(1s);
    QCOMPARE(AudioTool::message(fixture.view()), QStringLiteral("That isn't an audio file"));
    // What could be read was not refused.
    fixture.showAudio(path);
    pass(1s);
    QCOMPARE(AudioTool::message(fixture.view()), QString());
}

void AudioInfoModuleViewTest::showsTheFactsInOrder()
{
    AudioTool fixture;
    fixture.start();
    fixture.showFerry();
    QCOMPARE(AudioTool::rows(fixture.view()),
             (QStringList{QStringLiteral("Tempo: 84 BPM"), QStringLiteral("Format: WAV"),
                          QStringLiteral("Sample Rate: 48 kHz"), QStringLiteral("Bit Depth: 24 bit"),
                          QStringLiteral("Channels: Stereo"), QStringLiteral("Bitrate: 2304 kbps"),
                          QStringLiteral("Duration: 03:25"), QStringLiteral("File Size: 59 MB")}));
    QCOMPARE(AudioTool::message(fixture.view()), QString());
    // Two columns, 24 apart, filled row by row.
    const auto rows = fixture.view().findChildren<MetadataRow *>();
    QCOMPARE(rows[0]->geometry(), QRect(0, 0, 268, 27));
    QCOMPARE(rows[1]->geometry(), QRect(292, 0, 268, 27));
    QCOMPARE(rows[2]->geometry(), QRect(0, 27, 268, 27));
    QCOMPARE(rows[0]->mapTo(&fixture.view(), QPoint()), QPoint(14, 86));
    QCOMPARE(fixture.head().geometry(), QRect(14, 12, 560, 60));
}

void AudioInfoModuleViewTest::leavesOutWhatIsNotKnown()
{
    AudioTool fixture;
    fixture.start();
    AudioInfo bare;
    bare.name = QStringLiteral("bare.mp3");
    bare.format = QStringLiteral("MP3");
    bare.sampleRate = 0;
    bare.channels = 0;
    fixture.facts.set(QStringLiteral("/a/bare.mp3"), bare);
    fixture.showAudio(QStringLiteral("/a/bare.mp3"));
    fixture.facts.answerAll();
    QCOMPARE(AudioTool::rows(fixture.view()), (QStringList{QStringLiteral("Format: MP3"), QStringLiteral("Duration: —"),
                                                           QStringLiteral("File Size: Zero KB")}));
    QCOMPARE(fixture.audio.recents().items().first().summary, QStringLiteral("— · MP3"));
}

void AudioInfoModuleViewTest::showsTheTempoAsItIsFoundOut()
{
    AudioTool fixture;
    fixture.start();
    const QString path = fixture.addAudio(QStringLiteral("quay.wav"));
    fixture.facts.setTempo(path, 84);
    fixture.showAudio(path);
    const auto tempo = [&] { return AudioTool::rows(fixture.view()).first(); };
    QCOMPARE(tempo(), QStringLiteral("Tempo: Listening…"));
    QVERIFY(!AudioTool::button(fixture.view(), QStringLiteral("×2")));
    fixture.facts.answerAll();
    QCOMPARE(tempo(), QStringLiteral("Tempo: ≈ 84 BPM"));
    QAbstractButton *twice = AudioTool::button(fixture.view(), QStringLiteral("Read it as double time"));
    QVERIFY(twice);
    twice->click();
    QCOMPARE(tempo(), QStringLiteral("Tempo: ≈ 168 BPM"));
    QCOMPARE(twice->toolTip(), QStringLiteral("Back to the detected tempo"));
    QVERIFY(twice->isChecked());
    twice->click();
    QCOMPARE(tempo(), QStringLiteral("Tempo: ≈ 84 BPM"));
    QVERIFY(!twice->isChecked());
    // Without one there is no such row.
    fixture.showAudio(fixture.addAudio(QStringLiteral("noise.wav")));
    fixture.facts.answerAll();
    QCOMPARE(tempo(), QStringLiteral("Format: WAV"));
}

void AudioInfoModuleViewTest::aRowStaysWhileTheTempoIsFound()
{
    AudioTool fixture;
    fixture.start();
    const QString path = fixture.addAudio(QStringLiteral("quay.wav"));
    fixture.facts.setTempo(path, 84);
    fixture.showAudio(path);
    auto *format = fixture.view().findChildren<MetadataRow *>()[1]->findChild<QLineEdit *>();
    format->selectAll();
    fixture.facts.answerAll();
    QCOMPARE(format->selectedText(), QStringLiteral("WAV"));
}

void AudioInfoModuleViewTest::playsAndSeeksInTheHead()
{
    AudioTool fixture;
    fixture.start();
    const QString path = fixture.showFerry();
    QVERIFY(fixture.bar().isHidden());
    fixture.badge().click();
    fixture.settle();
    QCOMPARE(fixture.preview.playingPath(), path);
    QCOMPARE(fixture.badge().toolTip(), QStringLiteral("Stop"));
    QVERIFY(fixture.bar().isVisible());
    QCOMPARE(fixture.bar().maximum(), 205'000);
    fixture.preview.play(72);
    QCOMPARE(fixture.bar().value(), 72'000);

    // A drag goes to one place, when it ends; until then the player's time is not shown.
    const auto mouse = [&](QEvent::Type type, double part, Qt::MouseButtons buttons) {
        const QPointF at(part * fixture.bar().width(), SeekBar::kHeight / 2);
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, fixture.bar().mapToGlobal(at), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&fixture.bar(), &event);
    };
    QSignalSpy sought(&fixture.bar(), &SeekBar::sought);
    mouse(QEvent::MouseButtonPress, 0.2, Qt::LeftButton);
    mouse(QEvent::MouseMove, 0.5, Qt::LeftButton);
    fixture.preview.play(1);
    QVERIFY(std::abs(fixture.bar().shownPosition() - 102.5) < 1);
    QCOMPARE(fixture.preview.position(), 73.0);
    QCOMPARE(sought.count(), 0);
    mouse(QEvent::MouseButtonRelease, 0.5, Qt::NoButton);
    QCOMPARE(sought.count(), 1);
    QVERIFY(std::abs(fixture.preview.position() - 102.5) < 1);

    // Another file in its place shows what it is.
    fixture.preview.toggle(QStringLiteral("/a/other.wav"));
    fixture.settle();
    QCOMPARE(fixture.badge().toolTip(), QStringLiteral("Play"));
    QVERIFY(fixture.bar().isHidden());
}

void AudioInfoModuleViewTest::letsGoOfTheBarWhenTheSoundEnds()
{
    AudioTool fixture;
    fixture.start();
    const QString path = fixture.showFerry();
    fixture.preview.toggle(path);
    fixture.settle();
    QSignalSpy sought(&fixture.bar(), &SeekBar::sought);
    QTest::mousePress(&fixture.bar(), Qt::LeftButton, {}, QPoint(fixture.bar().width() / 2, 7));
    QVERIFY(fixture.bar().isSliderDown());
    fixture.preview.toggle(QStringLiteral("/a/other.wav"));
    QTest::mouseRelease(&fixture.bar(), Qt::LeftButton, {}, QPoint(fixture.bar().width() / 2, 7));
    QCOMPARE(sought.count(), 0);
    QCOMPARE(fixture.preview.position(), 0.0);
    // Played again, it tells the time.
    fixture.preview.toggle(path);
    fixture.preview.play(30);
    QCOMPARE(fixture.bar().shownPosition(), 30.0);
}

void AudioInfoModuleViewTest::playsByKeysUnlessAControlHasThem()
{
    AudioTool fixture;
    fixture.start();
    AudioTool::press(Qt::Key_Space);
    QCOMPARE(fixture.preview.playingPath(), QString());
    const QString path = fixture.showFerry();
    AudioTool::press(Qt::Key_Space);
    QCOMPARE(fixture.preview.playingPath(), path);
    AudioTool::press(Qt::Key_Right);
    AudioTool::press(Qt::Key_Right);
    QCOMPARE(fixture.preview.position(), 10.0);
    AudioTool::press(Qt::Key_Left);
    QCOMPARE(fixture.preview.position(), 5.0);

    // A button keeps Space for itself, but not the arrows.
    QAbstractButton *twice = AudioTool::button(fixture.view(), QStringLiteral("Read it as double time"));
    twice->setFocus(Qt::TabFocusReason);
    AudioTool::press(Qt::Key_Space);
    QCOMPARE(fixture.preview.playingPath(), path);
    QVERIFY(twice->isChecked());
    AudioTool::press(Qt::Key_Right);
    QCOMPARE(fixture.preview.position(), 10.0);
    QVERIFY(twice->hasFocus());
    fixture.bar().setFocus(Qt::TabFocusReason);
    AudioTool::press(Qt::Key_Right);
    QCOMPARE(fixture.preview.position(), 15.0);
    // In a value the arrows move what is selected.
    auto *value = fixture.view().findChild<QLineEdit *>();
    value->setFocus(Qt::MouseFocusReason);
    AudioTool::press(Qt::Key_Right, Qt::ShiftModifier);
    AudioTool::press(Qt::Key_Right);
    QCOMPARE(fixture.preview.position(), 15.0);
    fixture.view().setFocus();
    AudioTool::press(Qt::Key_Space);
    QCOMPARE(fixture.preview.playingPath(), QString());
    AudioTool::press(Qt::Key_Right);
    QCOMPARE(fixture.preview.position(), 0.0);

    // A row under the pointer is not what the keys are about, and a held key is one wish.
    const QString other = fixture.addAudio(QStringLiteral("other.wav"), 90);
    fixture.audio.recents().record(other, {});
    fixture.view().strip().expansionWanted(true);
    fixture.settle();
    QWidget &rows = *fixture.view().strip().rows().viewport();
    QMouseEvent move(QEvent::MouseMove, QPointF(300, 15), rows.mapToGlobal(QPointF(300, 15)), Qt::NoButton, {}, {});
    QCoreApplication::sendEvent(&rows, &move);
    QVERIFY(!fixture.view().strip().rows().activeId().isNull());
    fixture.view().setFocus();
    AudioTool::press(Qt::Key_Space);
    QCOMPARE(fixture.preview.playingPath(), path);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
    QCoreApplication::sendEvent(&fixture.view(), &held);
    QCOMPARE(fixture.preview.playingPath(), path);
    fixture.view().strip().rows().setFocus(Qt::TabFocusReason);
    AudioTool::press(Qt::Key_Space);
    QCOMPARE(fixture.preview.playingPath(), other);
    QCoreApplication::sendEvent(&fixture.view().strip().rows(), &held);
    QCOMPARE(fixture.preview.playingPath(), other);
}

void AudioInfoModuleViewTest::theTabKeyGoesFromTopToBottom()
{
    AudioTool fixture;
    fixture.start();
    for (const char *name : {"d.wav", "c.wav", "b.wav"})
        fixture.audio.recents().record(fixture.addAudio(QString::fromLatin1(name)), {});
    const QString path = fixture.showFerry();
    for (QWidget *action : fixture.view().headerActions())
        action->show(); // as the chrome does
    fixture.preview.toggle(path);
    fixture.settle();
    // Until it begins anew.
    const auto namesOnTheWay = [&] {
        QStringList names;
        const QWidget *first = nullptr;
        fixture.view().setFocus(Qt::OtherFocusReason);
        while (names.size() < 30) {
            AudioTool::press(Qt::Key_Tab);
            fixture.settle();
            const QWidget *reached = QApplication::focusWidget();
            if (reached == first)
                break;
            first = first != nullptr ? first : reached;
            names.append(reached->toolTip().isEmpty() ? reached->accessibleName() : reached->toolTip());
        }
        return names;
    };
    const QStringList above{QStringLiteral("Choose an audio file…"), QStringLiteral("Clear"), QStringLiteral("Stop"),
                            QStringLiteral("Position"), QStringLiteral("Read it as double time")};
    const QStringList chips{
        QStringLiteral("Show all · 4"), QStringLiteral("Forget all recent files"), path,
        QStringLiteral("Stop"),         QStringLiteral("Forget this file"),        QStringLiteral("/a/b.wav"),
        QStringLiteral("Play"),         QStringLiteral("Forget this file"),        QStringLiteral("/a/c.wav"),
        QStringLiteral("Play"),         QStringLiteral("Forget this file"),        QStringLiteral("1 more · show all")};
    QCOMPARE(namesOnTheWay(), above + chips);
    fixture.view().strip().expansionWanted(true);
    fixture.settle();
    QCOMPARE(namesOnTheWay(),
             above + QStringList({QStringLiteral("Show less"), QStringLiteral("Forget all recent files"),
                                  QStringLiteral("Recent files")}));
}

void AudioInfoModuleViewTest::keysGoOnWhenTheLastRecentFileIsForgotten()
{
    for (const bool isExpanded : {false, true}) {
        AudioTool fixture;
        fixture.start();
        fixture.showFerry();
        fixture.view().strip().expansionWanted(isExpanded);
        fixture.settle();
        QWidget *listed = isExpanded ? static_cast<QWidget *>(&fixture.view().strip().rows())
                                     : fixture.view().findChild<RecentChip *>();
        listed->setFocus(Qt::TabFocusReason);
        AudioTool::press(Qt::Key_Delete);
        fixture.settle();
        QVERIFY(fixture.audio.recents().items().isEmpty());
        QVERIFY(fixture.view().hasFocus());
    }
}

void AudioInfoModuleViewTest::shakesWhenItCannotBePlayed()
{
    AudioTool fixture;
    fixture.start();
    const QString path = fixture.showFerry();
    fixture.preview.makeUnplayable(path);
    const QPoint place = fixture.badge().pos();
    fixture.badge().click();
    bool moved = false;
    for (int i = 0; i < 40; ++i) {
        fixture.clock.advance(17ms);
        moved = moved || fixture.badge().pos() != place;
    }
    QVERIFY(moved);
    fixture.settle();
    QCOMPARE(fixture.badge().pos(), place);
    QCOMPARE(fixture.badge().toolTip(), QStringLiteral("Play"));
}

void AudioInfoModuleViewTest::copiesAllFacts()
{
    AudioTool fixture;
    fixture.start();
    QVERIFY(fixture.view().menuEntries().isEmpty());
    fixture.showFerry();
    const int ticks = fixture.ticks();
    const QList<MenuEntry> entries = fixture.view().menuEntries();
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.first().text, QStringLiteral("Copy all"));
    entries.first().action();
    QCOMPARE(std::get<QString>(*fixture.clipboard.offer()),
             QStringLiteral("Tempo\t84 BPM\nFormat\tWAV\nSample Rate\t48 kHz\nBit Depth\t24 bit\nChannels\tStereo\n"
                            "Bitrate\t2304 kbps\nDuration\t03:25\nFile Size\t59 MB\n"));
    QCOMPARE(fixture.ticks(), ticks + 1);
}

void AudioInfoModuleViewTest::offersTheChooserAndTheWayBack()
{
    AudioTool fixture;
    fixture.start();
    const auto help = [&] {
        QStringList texts;
        for (const QWidget *action : fixture.view().headerActions())
            texts.append(action->toolTip());
        return texts;
    };
    QCOMPARE(help(), QStringList(QStringLiteral("Choose an audio file…")));
    static_cast<QAbstractButton *>(fixture.view().headerActions()[0])->click();
    QCOMPARE(fixture.chooser.choice().message, QStringLiteral("Choose an audio file to inspect."));
    QCOMPARE(fixture.chooser.choice().mimeTypes, QStringList(QStringLiteral("audio/*")));
    QVERIFY(fixture.chooser.choice().namePatterns.contains(QStringLiteral("*.caf")));
    const QString path = fixture.addAudio(QStringLiteral("ferry.wav"), 84);
    fixture.chooser.close({path});
    fixture.facts.answer(path);
    QCOMPARE(help(), (QStringList{QStringLiteral("Choose an audio file…"), QStringLiteral("Clear")}));
    static_cast<QAbstractButton *>(fixture.view().headerActions()[1])->click();
    QVERIFY(!fixture.audio.inspection().info);
    QCOMPARE(help().size(), 1);
    fixture.settle();
    QCOMPARE(AudioTool::message(fixture.view()), QStringLiteral("Drop an audio file here"));
    // The tool may be closed while one chooses.
    static_cast<QAbstractButton *>(fixture.view().headerActions()[0])->click();
    fixture.tool.reset();
    fixture.chooser.close({path});
    QCOMPARE(fixture.facts.waiting(), QStringList(path));
}

void AudioInfoModuleViewTest::takesDropsAnywhere()
{
    AudioTool fixture;
    fixture.start();
    QVERIFY(!fixture.view().acceptsDrop({}));
    QVERIFY(fixture.view().acceptsDrop({QStringLiteral("/a/paper.pdf")}));
    const QString path = fixture.addAudio(QStringLiteral("ferry.wav"), 84);
    fixture.view().setDropTargeted(true);
    fixture.settle();
    const auto *overlay = fixture.view().findChild<DropOverlay *>();
    QVERIFY(overlay->isHidden());
    QVERIFY(fixture.view().dropFiles({path, QStringLiteral("/a/second.wav")}));
    QCOMPARE(fixture.facts.waiting(), QStringList(path));
    fixture.facts.answer(path);
    fixture.settle();
    // The drag goes on over the detail.
    QVERIFY(overlay->isVisible());
    fixture.view().setDropTargeted(false);
    fixture.settle();
    QVERIFY(overlay->isHidden());
    QVERIFY(fixture.view().dropFiles({QStringLiteral("/a/paper.pdf")}));
    QVERIFY(fixture.audio.isRejected());
    QCOMPARE(fixture.audio.inspection().path, path);
}

void AudioInfoModuleViewTest::undoesForgettingUntilThePanelCloses()
{
    AudioTool fixture;
    fixture.start();
    const QString path = fixture.showFerry();
    AudioTool::button(fixture.view(), QStringLiteral("Clear"))->click();
    QVERIFY(fixture.audio.recents().items().isEmpty());
    QVERIFY(!fixture.view().strip().isVisible());
    fixture.view().undo();
    QCOMPARE(fixture.audio.recents().items().first().path, path);
    QVERIFY(fixture.view().strip().isVisible());
    fixture.audio.recents().remove(path);
    fixture.audio.recents().lapse();
    fixture.view().undo();
    QVERIFY(fixture.audio.recents().items().isEmpty());
}

void AudioInfoModuleViewTest::comesBackAsItWas()
{
    AudioTool fixture;
    fixture.start();
    fixture.showFerry();
    fixture.preview.toggle(fixture.audio.inspection().path);
    fixture.preview.play(30);
    fixture.settle();
    const QImage before = fixture.view().grab().toImage();
    fixture.tool.emplace(fixture.audio, fixture.surroundings, fixture.context, nullptr);
    fixture.start();
    fixture.resize(fixture.view());
    fixture.settle();
    QCOMPARE(fixture.view().grab().toImage(), before);
}

void AudioInfoModuleViewTest::isIdleAtRest()
{
    AudioTool fixture;
    fixture.start();
    fixture.showFerry();
    fixture.preview.toggle(fixture.audio.inspection().path);
    fixture.settle();
    fixture.preview.stop();
    fixture.settle();
    QVERIFY(!fixture.frames.isRunning());
    const int fired = fixture.clock.firedCount();
    fixture.clock.advance(60s);
    QCOMPARE(fixture.clock.firedCount(), fired);
}

OSTRELLE_TEST(AudioInfoModuleViewTest)
#include "AudioInfoModuleViewTest.moc"
