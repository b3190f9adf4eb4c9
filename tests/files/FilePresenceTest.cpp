#include "StandInFiles.h"

#include "files/FileKinds.h"
#include "files/FilePresence.h"
#include "support/ManualTaskScheduler.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

using Kind = FileFacts::Kind;
using EntryKind = FileLookUp::Entry::Kind;

struct Asked
{
    Asked(FilePresence &presence, const QStringList &paths)
    {
        presence.ask(paths, &context, [this](const QList<FileFacts> &answer) {
            facts = answer;
            ++count;
        });
    }

    QList<Kind> kinds() const
    {
        QList<Kind> result;
        for (const FileFacts &one : facts)
            result.append(one.kind);
        return result;
    }

    QObject context;
    QList<FileFacts> facts;
    int count = 0;
};

} // namespace

class FilePresenceTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void tellsWhatStandsAtRealPaths();
    void answersAtOnceWhatItHasJustFoundOut();
    void aDeadMountDelaysOnlyItsOwnFiles();
    void manyFilesOfADeadMountTakeOneThread();
    void paintsWhatItKnowsAndTellsOfChanges();
    void leavesHangingThreadsBehind();
    void judgesKindsByNameAlone();
};

void FilePresenceTest::tellsWhatStandsAtRealPaths()
{
    const QTemporaryDir folder;
    const auto path = [&](const char *name) { return folder.filePath(QString::fromLatin1(name)); };
    QFile file(path("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(QStringLiteral("file"), path("link")));
    QVERIFY(QFile::link(QStringLiteral("./gone/../nowhere"), path("dangling")));
    QVERIFY(QFile::link(path("loop"), path("loop")));
    QVERIFY(QFile::link(folder.path(), path("up")));
    QCOMPARE(::mkfifo(QFile::encodeName(path("fifo")).constData(), 0600), 0);

    ManualTaskScheduler clock;
    FilePresence presence(clock);
    const Asked asked(presence,
                      {path("file"), path("link"), path("dangling"), path("loop"), path("up"), path("up/up/link"),
                       path("fifo"), path("none"), path("file/below"), folder.path(), QStringLiteral("/")});
    QTRY_COMPARE(asked.count, 1);
    QCOMPARE(asked.facts, QList<FileFacts>({{Kind::Regular, false},
                                            {Kind::Regular, true},
                                            {Kind::Missing, true},
                                            {Kind::Missing, true},
                                            {Kind::Folder, true},
                                            {Kind::Regular, true},
                                            {Kind::Special, false},
                                            {Kind::Missing, false},
                                            {Kind::Missing, false},
                                            {Kind::Folder, false},
                                            {Kind::Folder, false}}));
    QVERIFY(!asked.facts[1].isPlainFile() && asked.facts[0].isPlainFile());
}

void FilePresenceTest::answersAtOnceWhatItHasJustFoundOut()
{
    StandInFiles files;
    files.add("/home/a");
    ManualTaskScheduler clock;
    FilePresence presence(clock, files.lookUp());
    const QStringList paths{QStringLiteral("/home/a"), QStringLiteral("/home/a")};
    const Asked first(presence, paths);
    QCOMPARE(first.count, 0);
    QTRY_COMPARE(first.count, 1);
    const int asked = files.askedCount();
    const Asked second(presence, paths);
    QCOMPARE(second.kinds(), QList<Kind>(2, Kind::Regular));
    QCOMPARE(files.askedCount(), asked);

    files.remove("/home/a");
    clock.advance(FilePresence::kFreshness);
    const Asked third(presence, paths);
    QTRY_COMPARE(third.kinds(), QList<Kind>(2, Kind::Missing));
    // It may have come back just now.
    files.add("/home/a");
    const Asked fourth(presence, paths);
    QTRY_COMPARE(fourth.kinds(), QList<Kind>(2, Kind::Regular));
}

void FilePresenceTest::aDeadMountDelaysOnlyItsOwnFiles()
{
    StandInFiles files;
    files.mount("/net");
    files.add("/net/far");
    files.add("/home/near");
    files.add("/home/link", EntryKind::Link, "../net");
    files.kill("/net");
    ManualTaskScheduler clock;
    FilePresence presence(clock, files.lookUp());
    const QStringList dead{QStringLiteral("/net/far"), QStringLiteral("/home/link/far"), QStringLiteral("/home/link")};
    const Asked far(presence, dead);
    const Asked both(presence, {QStringLiteral("/home/near"), QStringLiteral("/net/far")});
    const Asked near(presence, {QStringLiteral("/home/near"), QStringLiteral("/home/none")});
    QTRY_COMPARE(near.kinds(), QList<Kind>({Kind::Regular, Kind::Missing}));
    QCOMPARE(far.count, 0);
    clock.advance(FilePresence::kDeadline);
    QCOMPARE(far.kinds(), QList<Kind>(3, Kind::Unknown));
    QCOMPARE(both.kinds(), QList<Kind>({Kind::Regular, Kind::Unknown}));
    // Known to hang: nobody waits again.
    const Asked again(presence, dead);
    QCOMPARE(again.kinds(), QList<Kind>(3, Kind::Unknown));

    files.revive();
    QTRY_COMPARE(presence.facts(dead[1]).kind, Kind::Regular);
    QCOMPARE(far.count, 1);
}

void FilePresenceTest::manyFilesOfADeadMountTakeOneThread()
{
    StandInFiles files;
    files.mount("/net");
    files.kill("/net");
    QStringList dead;
    for (int i = 0; i < 200; ++i)
        dead.append(QStringLiteral("/net/%1").arg(i));
    ManualTaskScheduler clock;
    FilePresence presence(clock, files.lookUp());
    const Asked far(presence, dead);
    const Asked near(presence, {QStringLiteral("/none")});
    QTRY_COMPARE(near.count, 1);
    QTRY_COMPARE(files.hangingCount(), 1);
    files.revive();
    QTRY_COMPARE(far.kinds(), QList<Kind>(200, Kind::Missing));
}

void FilePresenceTest::paintsWhatItKnowsAndTellsOfChanges()
{
    StandInFiles files;
    files.add("/home/a");
    ManualTaskScheduler clock;
    FilePresence presence(clock, files.lookUp());
    QSignalSpy changed(&presence, &FilePresence::changed);
    const QString path = QStringLiteral("/home/a");
    QVERIFY(presence.facts(path).isPresent());
    QTRY_COMPARE(changed.size(), 1);
    QCOMPARE(presence.facts(path).kind, Kind::Regular);

    files.remove("/home/a");
    const int asked = files.askedCount();
    QCOMPARE(presence.facts(path).kind, Kind::Regular);
    QCOMPARE(files.askedCount(), asked);
    clock.advance(FilePresence::kFreshness);
    QCOMPARE(presence.facts(path).kind, Kind::Regular);
    QTRY_COMPARE(changed.size(), 2);
    QCOMPARE(changed.last().first().toStringList(), QStringList{path});
    QVERIFY(!presence.facts(path).isPresent());
    QCOMPARE(clock.pendingCount(), 0);
}

void FilePresenceTest::leavesHangingThreadsBehind()
{
    StandInFiles files;
    files.mount("/net");
    files.kill("/net");
    ManualTaskScheduler clock;
    {
        FilePresence presence(clock, files.lookUp());
        const Asked far(presence, {QStringLiteral("/net/a")});
        QTRY_COMPARE(files.hangingCount(), 1);
    }
    files.revive();
    QTRY_COMPARE(files.hangingCount(), 0);
}

void FilePresenceTest::judgesKindsByNameAlone()
{
    const FileFacts unknown;
    for (const char *name : {"/x/song.mp3", "/x/SONG.WAV", "/x/a.flac", "/x/a.ogg", "/x/a.m4a", "/x/a.aiff"})
        QVERIFY2(isAudio(QString::fromLatin1(name), unknown), name);
    for (const char *name : {"/x/a.mp4", "/x/a.png", "/x/a.txt", "/x/mp3", "/x/a.unheardof", "/x/audio", "/x/a.m3u",
                             "/x/a.m3u8", "/x/a.pls"})
        QVERIFY2(!isAudio(QString::fromLatin1(name), unknown), name);
    QVERIFY(!isAudio(QStringLiteral("/x/a.mp3"), {Kind::Folder, false}));
    QVERIFY(isImage(QStringLiteral("/x/a.JPEG"), unknown) && isImage(QStringLiteral("/x/a.svg"), unknown));
    QVERIFY(!isImage(QStringLiteral("/x/a.mp3"), unknown) &&
            !isImage(QStringLiteral("/x/a.png"), {Kind::Folder, false}));
}

OSTRELLE_TEST(FilePresenceTest)
#include "FilePresenceTest.moc"
