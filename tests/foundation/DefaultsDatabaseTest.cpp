#include "foundation/DefaultsDatabase.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace ostrelle;

namespace {

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

const QString kKey = QStringLiteral("general.key");

} // namespace

class DefaultsDatabaseTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_home = std::make_unique<QTemporaryDir>();
        m_path = m_home->filePath(QStringLiteral("config/defaults.json"));
    }

    void keepsTypesAndTellsMissingFromStored()
    {
        const QJsonObject values{{QStringLiteral("a.bool"), false},
                                 {QStringLiteral("a.int"), 60},
                                 {QStringLiteral("a.double"), 0.35},
                                 {QStringLiteral("a.string"), QStringLiteral("60")},
                                 {QStringLiteral("a.null"), QJsonValue()},
                                 {QStringLiteral("a.list"), QJsonArray{QStringLiteral("x"), QStringLiteral("y")}},
                                 {QStringLiteral("a.map"), QJsonObject{{QStringLiteral("k"), 1}}}};
        const QByteArray bytes = QByteArrayLiteral("\0\xff\x01 binary");
        {
            DefaultsDatabase database(m_path);
            for (auto value = values.begin(); value != values.end(); ++value)
                database.setValue(value.key(), value.value());
            database.setData(QStringLiteral("a.data"), bytes);
            database.setValue(kKey, 1);
            database.remove(kKey);
        }
        DefaultsDatabase database(m_path);
        for (auto value = values.begin(); value != values.end(); ++value)
            QCOMPARE(database.value(value.key()), QJsonValue(value.value()));
        QCOMPARE(database.data(QStringLiteral("a.data")), bytes);
        QVERIFY(!database.value(kKey));
        QVERIFY(!database.data(QStringLiteral("a.string")));
        database.setValue(kKey, QJsonObject{{QStringLiteral("$data"), QStringLiteral("not base64!")}});
        QVERIFY(!database.data(kKey));
        QCOMPARE(QFile::permissions(m_path) & 0x77, QFile::Permissions());
        const QJsonObject file = QJsonDocument::fromJson(contents(m_path)).object();
        QCOMPARE(file.value(QStringLiteral("a.data")).toObject().keys(), QStringList{QStringLiteral("$data")});
    }

    void writesNothingWithoutAChange()
    {
        DefaultsDatabase database(m_path);
        database.remove(kKey);
        QVERIFY(database.flush());
        QVERIFY(QDir(m_home->path()).isEmpty());
    }

    void writesTheNewestOfManyChanges()
    {
        DefaultsDatabase database(m_path);
        for (int value = 0; value <= 5000; ++value)
            database.setValue(kKey, value);
        QVERIFY(database.flush());
        QCOMPARE(DefaultsDatabase(m_path).value(kKey), QJsonValue(5000));
    }

    void keepsAnUnreadableFile_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("truncated") << QByteArray(R"({"general.key": tr)");
        QTest::newRow("binary") << QByteArray("\x7f"
                                              "ELF\0\0\xff",
                                              7);
        QTest::newRow("array") << QByteArray(R"(["general.key"])");
    }

    void keepsAnUnreadableFile()
    {
        QFETCH(QByteArray, bytes);
        const QDir folder(m_home->filePath(QStringLiteral("config")));
        QVERIFY(QDir().mkpath(folder.path()));
        put(m_path, bytes);
        const QRegularExpression couldNotBeRead(QStringLiteral("could not be read"));
        QTest::ignoreMessage(QtWarningMsg, couldNotBeRead);
        DefaultsDatabase database(m_path);
        QVERIFY(!database.value(kKey));
        QVERIFY(database.flush());
        QCOMPARE(contents(m_path), bytes);
        QCOMPARE(folder.entryList(QDir::Files).size(), 1);

        database.setValue(kKey, 1);
        database.setValue(kKey, 2);
        QVERIFY(database.flush());
        database.setValue(kKey, 3);
        QVERIFY(database.flush());
        // Another one that somebody takes away before it can be kept.
        put(m_path, bytes);
        QTest::ignoreMessage(QtWarningMsg, couldNotBeRead);
        DefaultsDatabase other(m_path);
        QVERIFY(QFile::remove(m_path));
        other.setValue(kKey, 3);
        QVERIFY(other.flush());
        const QStringList aside = folder.entryList({QStringLiteral("defaults.unreadable-*.json")});
        QCOMPARE(aside.size(), 1);
        QCOMPARE(contents(folder.filePath(aside.first())), bytes);
        QCOMPARE(DefaultsDatabase(m_path).value(kKey), QJsonValue(3));
    }

    void triesAgainAfterAFailedWrite()
    {
        const QString folder = m_home->filePath(QStringLiteral("config"));
        put(folder, "in the way");
        DefaultsDatabase database(m_path);
        // One line for one cause: a second one would fail this test.
        const QRegularExpression couldNotBeSaved(QStringLiteral("could not be saved"));
        QTest::ignoreMessage(QtWarningMsg, couldNotBeSaved);
        database.setValue(kKey, 1);
        QVERIFY(!database.flush());
        database.setValue(kKey, 2);
        QVERIFY(!database.flush());
        QCOMPARE(database.value(kKey), QJsonValue(2));
        std::optional<bool> isFailing;
        database.observeSaving([&isFailing](bool is) { isFailing = is; });
        QTRY_COMPARE(isFailing, true);
        QVERIFY(QFile::remove(folder));
        database.retry();
        QTRY_COMPARE(isFailing, false);
        QVERIFY(database.flush());
        QCOMPARE(DefaultsDatabase(m_path).value(kKey), QJsonValue(2));
    }

    void cleansUpAfterAKilledWriter()
    {
        const QString left = m_home->filePath(QStringLiteral("config/.defaults.json.Zz9yX1"));
        QVERIFY(QDir().mkpath(m_home->filePath(QStringLiteral("config"))));
        put(left, "{\"half");
        DefaultsDatabase database(m_path);
        database.setValue(kKey, true);
        QVERIFY(database.flush());
        QVERIFY(!QFile::exists(left));
    }

private:
    std::unique_ptr<QTemporaryDir> m_home;
    QString m_path;
};

OSTRELLE_TEST(DefaultsDatabaseTest)
#include "DefaultsDatabaseTest.moc"
