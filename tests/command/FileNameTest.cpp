#include "command/FileName.h"
#include "command/NameSource.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ostrelle;

/// Names of files: any bytes, and where a command finds them.
class FileNameTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void bytesSurviveAsWords_data();
    void bytesSurviveAsWords();
    void foldersStandForWhatTheyHold();
};

void FileNameTest::bytesSurviveAsWords_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("text");
    QTest::addColumn<QString>("display");
    const auto row = [](const char *title, const QByteArray &name, bool text, const QString &display) {
        QTest::newRow(title) << name << text << display;
    };
    row("ascii", "a b.mp3", true, QStringLiteral("a b.mp3"));
    row("beyond the plane", "\xf0\x9f\x8e\xb5.wav", true, QString::fromUtf8("🎵.wav"));
    row("latin 1", "caf\xe9.wav", false, QStringLiteral("caf%E9.wav"));
    row("cut off in a letter", "a\xe2\x82", false, QStringLiteral("a%E2%82"));
    row("a real replacement character", "\xef\xbf\xbd\xff", false, QStringLiteral("\uFFFD%FF"));
    row("an encoded surrogate", "\xed\xb3\xbf", false, QStringLiteral("%ED%B3%BF"));
    row("percent and newline", "100%\n.png", true, QStringLiteral("100%\n.png"));
}

void FileNameTest::bytesSurviveAsWords()
{
    QFETCH(QByteArray, name);
    QCOMPARE(bytesOfWord(wordOfBytes(name)), name);
    QTEST(isText(name), "text");
    QTEST(displayName(name), "display");
}

void FileNameTest::foldersStandForWhatTheyHold()
{
    const QTemporaryDir folder;
    const QDir root(folder.path());
    QVERIFY(root.mkpath(QStringLiteral("b/deep")));
    for (const char *name : {"z.wav", "a.wav", "notes.txt", "b/deep/c.wav"}) {
        QFile file(root.filePath(QLatin1StringView(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    // A way back up, and a link to nothing.
    QVERIFY(QFile::link(folder.path(), root.filePath(QStringLiteral("b/up.wav"))));
    QVERIFY(QFile::link(QStringLiteral("nothing"), root.filePath(QStringLiteral("b/lost.wav"))));
    const auto namesWith = [&](bool isRecursive) {
        NameSource source(
            {QStringLiteral("first"), folder.path()},
            {.isRecursive = isRecursive, .isWanted = [](const QByteArray &name) { return name.endsWith(".wav"); }});
        QStringList names;
        while (source.state() == NameSource::State::Ready)
            names.append(root.relativeFilePath(QString::fromUtf8(source.next().name)));
        return names.mid(1);
    };
    QCOMPARE(namesWith(false), QStringList{QStringLiteral(".")});
    QCOMPARE(namesWith(true),
             (QStringList{QStringLiteral("a.wav"), QStringLiteral("b/deep/c.wav"), QStringLiteral("z.wav")}));
}

OSTRELLE_TEST(FileNameTest)
#include "FileNameTest.moc"
