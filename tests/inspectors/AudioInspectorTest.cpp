#include "InspectorsFixture.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

using namespace ostrelle;
using namespace std::chrono_literals;

class AudioInspectorTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void showsAFileAndKeepsIt();
    void judgesFilesByTheirNames_data();
    void judgesFilesByTheirNames();
    void refusesForTwoSeconds();
    void refusesWhatCannotBeRead();
    void refusesWhatIsNotAnsweredInTime();
    void theNewestFileWins();
    void listensToFilesWithoutATempo();
    void neverShowsAnotherFilesTempo();
    void readsTheTempoAsDoubleTime();
    void stopsThePlayer();
    void opensRecentFiles();
    void aMissingRecentFileLeavesTheOneBeingRead();
    void clearingEndsEverything();
    void countsASlowVolumeAsPresent();
};

void AudioInspectorTest::showsAFileAndKeepsIt()
{
    InspectorsFixture fixture;
    const QString path = fixture.addAudio(QStringLiteral("horn.wav"), 128);
    fixture.audio.load(path);
    QVERIFY(fixture.audio.isReading());
    QVERIFY(!fixture.audio.inspection().info);
    fixture.facts.answer(path);
    QVERIFY(!fixture.audio.isReading());
    QCOMPARE(fixture.audio.inspection().info, InspectorsFixture::audioInfo(path, 128));
    QCOMPARE(fixture.audio.inspection().path, path);
    QCOMPARE(fixture.ticks(), 1);
    const RecentFile recent = fixture.audio.recents().items().first();
    QCOMPARE(recent.path, path);
    QCOMPARE(recent.summary, QStringLiteral("03:25 · WAV"));
    // It is there after a start, in the audio tool only.
    AudioInspector restarted(fixture.around, fixture.facts, fixture.preview);
    QCOMPARE(restarted.recents().items(), fixture.audio.recents().items());
    QVERIFY(fixture.image.recents().items().isEmpty());
}

void AudioInspectorTest::judgesFilesByTheirNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isAudio");
    QTest::addColumn<bool>("isImage");
    for (const char *name : {"a.wav", "A.AIFF", "a.mp3", "a.m4a", "a.flac", "a.caf", "a.ogg", "a.opus", "a.wma",
                             "a.ac3", "a.mka", "a.mkv", "a.mp4", "a.mov"})
        QTest::newRow(name) << QString::fromLatin1(name) << true << false;
    for (const char *name :
         {"a.png", "A.JPG", "a.heic", "a.tiff", "a.dng", "a.cr2", "a.psd", "a.hdr", "a.svg", "a.gif"})
        QTest::newRow(name) << QString::fromLatin1(name) << false << true;
    for (const char *name : {"a.pdf", "a.txt", "wav", "a", "a.zip"})
        QTest::newRow(name) << QString::fromLatin1(name) << false << false;
}

void AudioInspectorTest::judgesFilesByTheirNames()
{
    QFETCH(QString, name);
    QTEST(AudioInspector::supports(QStringLiteral("/nowhere/") + name), "isAudio");
    QTEST(ImageInspector::supports(QStringLiteral("/nowhere/") + name), "isImage");
}

void AudioInspectorTest::refusesForTwoSeconds()
{
    InspectorsFixture fixture;
    const QString path = fixture.addAudio(QStringLiteral("horn.wav"), 128);
    fixture.showAudio(path);
    fixture.audio.load(QStringLiteral("/a/paper.pdf"));
    QVERIFY(fixture.audio.isRejected());
    QCOMPARE(fixture.audio.inspection().path, path);
    fixture.clock.advance(1500ms);
    fixture.audio.load(QStringLiteral("/a/other.pdf"));
    fixture.clock.advance(1999ms);
    QVERIFY(fixture.audio.isRejected());
    fixture.clock.advance(1ms);
    QVERIFY(!fixture.audio.isRejected());
    // What is shown was not refused.
    fixture.audio.load(QStringLiteral("/a/paper.pdf"));
    fixture.showAudio(path);
    QVERIFY(!fixture.audio.isRejected());
}

void AudioInspectorTest::refusesWhatCannotBeRead()
{
    InspectorsFixture fixture;
    fixture.showAudio(fixture.addAudio(QStringLiteral("horn.wav"), 128));
    fixture.showAudio(QStringLiteral("/a/text.mp3"));
    QVERIFY(fixture.audio.isRejected());
    QVERIFY(!fixture.audio.inspection().info);
    QCOMPARE(fixture.audio.inspection(), AudioInspection());
    QCOMPARE(InspectorsFixture::names(fixture.audio.recents()), QStringList(QStringLiteral("horn.wav")));
    QCOMPARE(fixture.ticks(), 1);
}

void AudioInspectorTest::refusesWhatIsNotAnsweredInTime()
{
    InspectorsFixture fixture;
    const QString path = fixture.addAudio(QStringLiteral("slow.wav"));
    fixture.audio.load(path);
    fixture.clock.advance(1999ms);
    QVERIFY(!fixture.audio.isRejected());
    fixture.clock.advance(1ms);
    QVERIFY(fixture.audio.isRejected());
    QVERIFY(!fixture.audio.isReading());
    QVERIFY(fixture.facts.waiting().isEmpty());
}

void AudioInspectorTest::theNewestFileWins()
{
    InspectorsFixture fixture;
    const QString first = fixture.addAudio(QStringLiteral("first.wav"), 100);
    const QString second = fixture.addAudio(QStringLiteral("second.wav"), 120);
    fixture.audio.load(first);
    fixture.clock.advance(1500ms);
    fixture.audio.load(second);
    // Only the second one is waited for, and with patience of its own.
    QCOMPARE(fixture.facts.waiting(), QStringList(second));
    fixture.clock.advance(1500ms);
    QVERIFY(!fixture.audio.isRejected());
    fixture.facts.answer(second);
    QCOMPARE(fixture.audio.inspection().path, second);
    QCOMPARE(InspectorsFixture::names(fixture.audio.recents()), QStringList(QStringLiteral("second.wav")));
}

void AudioInspectorTest::listensToFilesWithoutATempo()
{
    InspectorsFixture fixture;
    const QString tagged = fixture.addAudio(QStringLiteral("tagged.mp3"), 128);
    fixture.showAudio(tagged);
    QVERIFY(fixture.facts.waiting().isEmpty());
    QVERIFY(!fixture.audio.inspection().isDetectingBpm);
    QCOMPARE(fixture.audio.inspection().displayedBpm(), 128.0);
    QVERIFY(!fixture.audio.inspection().isBpmEstimate());

    const QString untagged = fixture.addAudio(QStringLiteral("untagged.wav"));
    fixture.facts.setTempo(untagged, 124);
    fixture.showAudio(untagged);
    QVERIFY(fixture.audio.inspection().isDetectingBpm);
    QVERIFY(!fixture.audio.inspection().displayedBpm());
    fixture.facts.answerAll();
    QVERIFY(!fixture.audio.inspection().isDetectingBpm);
    QCOMPARE(fixture.audio.inspection().displayedBpm(), 124.0);
    QVERIFY(fixture.audio.inspection().isBpmEstimate());

    fixture.showAudio(fixture.addAudio(QStringLiteral("noise.wav")));
    fixture.facts.answerAll();
    QVERIFY(!fixture.audio.inspection().isDetectingBpm);
    QVERIFY(!fixture.audio.inspection().displayedBpm());
    QVERIFY(!fixture.audio.inspection().isBpmEstimate());
}

void AudioInspectorTest::neverShowsAnotherFilesTempo()
{
    InspectorsFixture fixture;
    const QString first = fixture.addAudio(QStringLiteral("first.wav"));
    const QString second = fixture.addAudio(QStringLiteral("second.wav"));
    fixture.facts.setTempo(first, 100);
    fixture.showAudio(first);
    QCOMPARE(fixture.facts.waiting(), QStringList(QStringLiteral("tempo ") + first));
    fixture.audio.load(second);
    QCOMPARE(fixture.facts.waiting(), QStringList(second));
    fixture.facts.answerAll();
    QVERIFY(!fixture.audio.inspection().displayedBpm());

    // A refused file takes nothing away from the one on display.
    fixture.showAudio(first);
    fixture.audio.load(QStringLiteral("/a/paper.pdf"));
    fixture.facts.answerAll();
    QCOMPARE(fixture.audio.inspection().displayedBpm(), 100.0);
}

void AudioInspectorTest::readsTheTempoAsDoubleTime()
{
    InspectorsFixture fixture;
    const QString tagged = fixture.addAudio(QStringLiteral("tagged.mp3"), 128);
    fixture.showAudio(tagged);
    fixture.audio.toggleDoubleTime();
    QCOMPARE(fixture.audio.inspection().displayedBpm(), 256.0);
    fixture.audio.toggleDoubleTime();
    QCOMPARE(fixture.audio.inspection().displayedBpm(), 128.0);
    fixture.audio.toggleDoubleTime();
    fixture.showAudio(fixture.addAudio(QStringLiteral("other.mp3"), 90));
    QCOMPARE(fixture.audio.inspection().displayedBpm(), 90.0);
}

void AudioInspectorTest::stopsThePlayer()
{
    InspectorsFixture fixture;
    const QString path = fixture.addAudio(QStringLiteral("horn.wav"), 128);
    fixture.preview.toggle(path);
    fixture.audio.load(QStringLiteral("/a/paper.pdf"));
    QCOMPARE(fixture.preview.playingPath(), path);
    fixture.audio.load(path);
    QCOMPARE(fixture.preview.playingPath(), QString());
    fixture.facts.answer(path);

    fixture.preview.toggle(QStringLiteral("/a/other.wav"));
    fixture.audio.clear();
    QCOMPARE(fixture.preview.playingPath(), QStringLiteral("/a/other.wav"));
    fixture.showAudio(path);
    fixture.preview.toggle(path);
    fixture.audio.clear();
    QCOMPARE(fixture.preview.playingPath(), QString());
}

void AudioInspectorTest::opensRecentFiles()
{
    InspectorsFixture fixture;
    const QString path = fixture.addAudio(QStringLiteral("horn.wav"), 128);
    fixture.audio.recents().record(path, {});
    fixture.audio.recents().record(QStringLiteral("/a/gone.wav"), {});
    fixture.audio.recents().record(QStringLiteral("/a/./b/../gone too.wav"), {});
    const RecentFile gone = fixture.audio.recents().items()[1];
    fixture.audio.open(gone);
    QTRY_VERIFY(fixture.audio.isRejected());
    QCOMPARE(InspectorsFixture::names(fixture.audio.recents()),
             (QStringList{QStringLiteral("gone too.wav"), QStringLiteral("horn.wav")}));
    QVERIFY(!fixture.audio.recents().canUndo());
    fixture.audio.open(fixture.audio.recents().items()[0]);
    QTRY_COMPARE(fixture.audio.recents().items().size(), 1);

    fixture.audio.open(fixture.audio.recents().items()[0]);
    QTRY_COMPARE(fixture.facts.waiting(), QStringList(path));
    fixture.facts.answer(path);
    QCOMPARE(fixture.audio.inspection().path, path);
    QCOMPARE(fixture.audio.recents().items().first().summary, QStringLiteral("03:25 · WAV"));

    // What was offered later wins, also while it is being found out whether the first one is there.
    const QString later = fixture.addAudio(QStringLiteral("later.wav"), 90);
    fixture.clock.advance(3s);
    fixture.audio.open(fixture.audio.recents().items()[0]);
    fixture.showAudio(later);
    bool isAnswered = false;
    fixture.presence.ask({path}, this, [&](const auto &) { isAnswered = true; });
    QTRY_VERIFY(isAnswered);
    QCOMPARE(fixture.audio.inspection().path, later);
    QVERIFY(fixture.facts.waiting().isEmpty());
}

void AudioInspectorTest::aMissingRecentFileLeavesTheOneBeingRead()
{
    InspectorsFixture fixture;
    fixture.audio.recents().record(QStringLiteral("/a/gone.wav"), {});
    const QString path = fixture.addAudio(QStringLiteral("horn.wav"), 128);
    fixture.audio.load(path);
    fixture.audio.open(fixture.audio.recents().items().first());
    QTRY_VERIFY(fixture.audio.isRejected());
    QVERIFY(fixture.audio.isReading());
    fixture.clock.advance(500ms);
    fixture.facts.answer(path);
    QCOMPARE(fixture.audio.inspection().path, path);
    // The refusal was of the later one.
    fixture.clock.advance(1499ms);
    QVERIFY(fixture.audio.isRejected());
    fixture.clock.advance(1ms);
    QVERIFY(!fixture.audio.isRejected());

    // One that is there takes its place, although the first one is read meanwhile.
    const QString later = fixture.addAudio(QStringLiteral("later.wav"), 90);
    fixture.audio.recents().record(later, {});
    fixture.clock.advance(3s);
    fixture.audio.load(path);
    fixture.audio.open(fixture.audio.recents().items().first());
    fixture.facts.answer(path);
    QTRY_COMPARE(fixture.facts.waiting(), QStringList(later));
}

void AudioInspectorTest::clearingEndsEverything()
{
    InspectorsFixture fixture;
    const QString path = fixture.addAudio(QStringLiteral("horn.wav"));
    fixture.showAudio(path);
    fixture.audio.toggleDoubleTime();
    fixture.audio.clear();
    QCOMPARE(fixture.audio.inspection(), AudioInspection());
    QVERIFY(fixture.facts.waiting().isEmpty());
    fixture.audio.load(path);
    fixture.audio.clear();
    QVERIFY(!fixture.audio.isReading());
    QVERIFY(fixture.facts.waiting().isEmpty());
    fixture.clock.advance(5s);
    QVERIFY(!fixture.audio.isRejected());
    QCOMPARE(fixture.clock.pendingCount(), 0);
}

void AudioInspectorTest::countsASlowVolumeAsPresent()
{
    InspectorsFixture fixture;
    const QString path = QStringLiteral("/net/far.wav");
    fixture.files.add(path.toUtf8());
    fixture.files.mount("/net");
    fixture.files.kill("/net");
    fixture.audio.recents().record(path, {});
    fixture.audio.open(fixture.audio.recents().items().first());
    fixture.clock.advance(FilePresence::kDeadline);
    QCOMPARE(fixture.facts.waiting(), QStringList(path));
    QCOMPARE(fixture.audio.recents().items().size(), 1);
}

OSTRELLE_TEST(AudioInspectorTest)
#include "AudioInspectorTest.moc"
