#include "ClipFixtures.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace ostrelle;

/// What the store keeps, in both of its ways to write, on real files.
class ClipboardStoreTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void writesOneCompactArrayInListOrder();
    void readsForeignLayouts();
    void givesBackAnyTextExactly();
    void randomChangesSurviveReloading_data();
    void randomChangesSurviveReloading();
    void removedImagesComeBackExactly_data();
    void removedImagesComeBackExactly();
    void erasedContentLeavesTheDisk_data();
    void erasedContentLeavesTheDisk();
    void settlingWithoutAnErasureWritesNothing();
    void findsAnEqualImage();
    void keepsFilesPrivateAndClearsUnfinishedOnes();

private:
    QString path(const char *name) const { return m_folder->path() + u'/' + QLatin1String(name); }
    /// Makes the array so large that changes go to the journal.
    void growBeyondWholeRewrites(ClipboardStore &store, ExpectedHistory &expected);
    static void addSizes();

    std::unique_ptr<QTemporaryDir> m_folder;
};

void ClipboardStoreTest::init()
{
    TestBase::init();
    m_folder = std::make_unique<QTemporaryDir>();
}

void ClipboardStoreTest::growBeyondWholeRewrites(ClipboardStore &store, ExpectedHistory &expected)
{
    const QByteArray image = noise(ClipboardStore::kWholeRewriteLimit, 99);
    expected.insert(imageClip(image), image);
    QVERIFY(store.flush());
    QVERIFY(!QFileInfo::exists(path("clipboard.journal")));
}

void ClipboardStoreTest::addSizes()
{
    QTest::addColumn<bool>("isLarge");
    QTest::newRow("whole rewrites") << false;
    QTest::newRow("journal") << true;
}

void ClipboardStoreTest::writesOneCompactArrayInListOrder()
{
    ClipboardStore store(m_folder->path());
    QVERIFY(store.load().isEmpty());
    ClipItem files;
    files.id = QUuid::createUuid();
    files.kind = ClipItem::Kind::Files;
    files.paths = QStringList{QStringLiteral("/a \"b\""), QStringLiteral("/c")};
    files.date = 8.1e8 + 0.125;
    ClipItem image = imageClip("PNG!", 3);
    image.pinned = true;
    store.insertAtTop(files, {});
    store.insertAtTop(image, "PNG!");
    QVERIFY(store.close());

    const QByteArray written = fileContent(path("clipboard.json"));
    const QJsonArray array = QJsonDocument::fromJson(written).array();
    QCOMPARE(written.count(' '), 2); // one in a name, one in a path
    QCOMPARE(array.size(), 2);
    const QJsonObject first{{QStringLiteral("id"), image.id.toString(QUuid::WithoutBraces).toUpper()},
                            {QStringLiteral("kind"), QStringLiteral("image")},
                            {QStringLiteral("imageData"), QStringLiteral("UE5HIQ==")},
                            {QStringLiteral("imageType"), QStringLiteral("public.png")},
                            {QStringLiteral("date"), 3},
                            {QStringLiteral("pinned"), true},
                            {QStringLiteral("appName"), QStringLiteral("Paint \"X\"")}};
    QCOMPARE(array[0].toObject(), first);
    QCOMPARE(array[1][QStringLiteral("paths")].toArray(),
             QJsonArray({QStringLiteral("/a \"b\""), QStringLiteral("/c")}));
    QCOMPARE(array[1][QStringLiteral("date")].toDouble(), 8.1e8 + 0.125);
}

void ClipboardStoreTest::readsForeignLayouts()
{
    // Other order and spacing, escaped Base64, lower-case id, unknown key, null for absent, both halves of a pair
    // escaped.
    writeFile(path("clipboard.json"),
              " [ { \"pinned\" : true, \"imageType\":\"public.tiff\", \"imageData\" : \"\\/\\/79\", \"date\": 5, "
              "\"kind\": \"image\", \"id\":\"0a000000-0000-4000-8000-00000000000b\", \"new\":{\"x\":[1,{}]},"
              "\"appName\":null},\n{\"id\":\"0B000000-0000-4000-8000-00000000000B\",\"kind\":\"text\","
              "\"text\":\"\\ud83d\\ude00 \\u0000]},{\",\"date\":1e3,\"pinned\":false} ] ");
    ClipboardStore store(m_folder->path());
    QList<ClipItem> items = store.load();
    QCOMPARE(items.size(), 2);
    QCOMPARE(items[0].image->byteSize, 3);
    QCOMPARE(items[0].image->type, QStringLiteral("public.tiff"));
    QVERIFY(!items[0].appName);
    QCOMPARE(*items[1].text, QStringLiteral("\U0001F600 ") + QChar(0) + QStringLiteral("]},{"));
    QCOMPARE(items[1].date, 1000.0);
    QVERIFY(readImage(store, items[0].id) == QByteArray("\xff\xfe\xfd"));
    QVERIFY(findImage(store, "\xff\xfe\xfd", {items[0].id}) == items[0].id);

    store.setPinned(items[1].id, true);
    QVERIFY(store.close());
    items[1].pinned = true;
    ClipboardStore reopened(m_folder->path());
    QVERIFY(reopened.load() == items);
    QVERIFY(readImage(reopened, items[0].id) == QByteArray("\xff\xfe\xfd"));
    QVERIFY(!fileContent(path("clipboard.json")).contains(' ') || items[1].text->contains(u' '));
    QVERIFY(!fileContent(path("clipboard.json")).contains("\"new\""));
}

void ClipboardStoreTest::givesBackAnyTextExactly()
{
    QString everything;
    for (char16_t c = 0; c < 0x300; ++c)
        everything += QChar(c);
    everything += QStringLiteral("\\\"/\u2028\uFEFF\uFFFF\U0001F469\u200D\U0001F680");
    ClipboardStore store(m_folder->path());
    store.load();
    ClipItem item = textClip(everything, 812345678.90123456);
    item.appName = everything;
    store.insertAtTop(item, {});
    // Half of a pair cannot be written in UTF-8, and must not make the file unreadable.
    const ClipItem broken = textClip(QStringLiteral("a") + QChar(0xd800) + u'b');
    store.insertAtTop(broken, {});
    QVERIFY(store.close());

    const QList<ClipItem> items = ClipboardStore(m_folder->path()).load();
    QCOMPARE(items.size(), 2);
    QVERIFY(items[1] == item);
    QCOMPARE(*items[0].text, QStringLiteral("a?b"));
}

void ClipboardStoreTest::randomChangesSurviveReloading_data()
{
    addSizes();
}

void ClipboardStoreTest::randomChangesSurviveReloading()
{
    QFETCH(bool, isLarge);
    auto store = std::make_unique<ClipboardStore>(m_folder->path());
    store->load();
    ExpectedHistory expected(*store);
    if (isLarge)
        growBeyondWholeRewrites(*store, expected);
    QRandomGenerator random(isLarge ? 7 : 8);
    for (int step = 0; step < 300; ++step) {
        const int size = static_cast<int>(expected.items().size());
        const int action = size < 4 ? random.bounded(2) : random.bounded(12);
        const int index = size > 1 ? random.bounded(size) : 0;
        const double date = 8e8 + step + random.generateDouble();
        if (action < 3) {
            expected.insert(textClip(QStringLiteral("text %1").arg(step).repeated(random.bounded(1, 400)), date));
        } else if (action < 4 || size == 0) {
            const QByteArray image = noise(random.bounded(1, 90'000), static_cast<quint32>(step));
            expected.insert(imageClip(image, date), image);
        } else if (action < 6) {
            expected.moveToTop(index, date);
        } else if (action < 8) {
            expected.togglePin(index);
        } else if (action < 9) {
            expected.trim(index);
        } else if (action < 10) {
            expected.remove(index,
                            random.bounded(4) > 0 ? ClipboardStore::Erasure::Undoable : ClipboardStore::Erasure::Final);
        } else if (action < 11) {
            expected.remove(index, ClipboardStore::Erasure::Undoable);
            if (random.bounded(2) > 0)
                QVERIFY(store->flush());
            expected.restore();
        } else {
            store->settle();
        }
        if (random.bounded(10) == 0)
            QVERIFY(store->flush());
        if (step % 60 == 59) {
            // Before it is closed, another reader sees the same from array and journal.
            QVERIFY(store->flush());
            QTemporaryDir copy;
            for (const char *name : {"clipboard.json", "clipboard.journal"})
                QFile::copy(path(name), copy.path() + u'/' + QLatin1String(name));
            ClipboardStore reader(copy.path());
            compareWithStore(reader, reader.load(), expected);
            store = std::make_unique<ClipboardStore>(m_folder->path());
            expected.follow(*store);
            compareWithStore(*store, store->load(), expected);
            QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden),
                     QStringList(QStringLiteral("clipboard.json")));
        }
    }
}

void ClipboardStoreTest::removedImagesComeBackExactly_data()
{
    addSizes();
}

void ClipboardStoreTest::removedImagesComeBackExactly()
{
    QFETCH(bool, isLarge);
    ClipboardStore store(m_folder->path());
    store.load();
    ExpectedHistory expected(store);
    if (isLarge)
        growBeyondWholeRewrites(store, expected);
    for (quint32 seed = 0; seed < 3; ++seed) {
        const QByteArray image = noise(70'000, seed);
        expected.insert(imageClip(image, seed), image);
    }
    QVERIFY(store.flush());
    const QUuid id = expected.items()[1].id;
    expected.remove(1, ClipboardStore::Erasure::Undoable);
    // The file is replaced while the item is gone, whatever the way to write.
    expected.remove(0, ClipboardStore::Erasure::Final);
    QVERIFY(store.flush());
    QVERIFY(!folderContains(m_folder->path(), expected.image(id).toBase64().first(300)));
    // Takes back the first of both removals, by hand.
    const ClipItem item = [&] {
        ClipItem removed = imageClip(expected.image(id), 1);
        removed.id = id;
        return removed;
    }();
    QList<QUuid> order{id};
    for (const ClipItem &kept : expected.items())
        order.append(kept.id);
    store.restore({item}, order);
    QVERIFY(store.close());

    ClipboardStore reopened(m_folder->path());
    const QList<ClipItem> items = reopened.load();
    QCOMPARE(items.size(), order.size());
    QVERIFY(items.first() == item);
    QVERIFY(readImage(reopened, id) == expected.image(id));
}

void ClipboardStoreTest::erasedContentLeavesTheDisk_data()
{
    addSizes();
}

void ClipboardStoreTest::erasedContentLeavesTheDisk()
{
    QFETCH(bool, isLarge);
    const QByteArray needle = "needle-in-the-history";
    ClipboardStore store(m_folder->path());
    store.load();
    ExpectedHistory expected(store);
    if (isLarge)
        growBeyondWholeRewrites(store, expected);
    for (const auto erasure : {ClipboardStore::Erasure::Undoable, ClipboardStore::Erasure::Final}) {
        expected.insert(textClip(QString::fromLatin1(needle)));
        QVERIFY(store.flush());
        QVERIFY(folderContains(m_folder->path(), needle));
        expected.remove(0, erasure);
        if (erasure == ClipboardStore::Erasure::Undoable)
            store.settle();
        QVERIFY(store.flush());
        QVERIFY(!folderContains(m_folder->path(), needle));
    }
    // Killed before the undo lapsed: it leaves at the next start.
    expected.insert(textClip(QString::fromLatin1(needle)));
    QVERIFY(store.flush());
    expected.remove(0, ClipboardStore::Erasure::Undoable);
    QVERIFY(store.flush());
    QTemporaryDir left;
    for (const char *name : {"clipboard.json", "clipboard.journal"})
        QFile::copy(path(name), left.path() + u'/' + QLatin1String(name));
    ClipboardStore next(left.path());
    QVERIFY(next.load() == expected.items());
    QVERIFY(next.flush());
    QVERIFY(!folderContains(left.path(), needle));
}

void ClipboardStoreTest::settlingWithoutAnErasureWritesNothing()
{
    ClipboardStore store(m_folder->path());
    store.load();
    ExpectedHistory expected(store);
    growBeyondWholeRewrites(store, expected);
    expected.insert(textClip(QStringLiteral("kept")));
    QVERIFY(store.flush());
    struct stat before = {};
    QCOMPARE(::stat(qPrintable(path("clipboard.json")), &before), 0);
    store.settle();
    QVERIFY(store.flush());
    struct stat after = {};
    QCOMPARE(::stat(qPrintable(path("clipboard.json")), &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
    QVERIFY(QFileInfo::exists(path("clipboard.journal")));
}

void ClipboardStoreTest::findsAnEqualImage()
{
    ClipboardStore store(m_folder->path());
    store.load();
    const QByteArray image = noise(400'000, 1);
    QByteArray other = image;
    other.back() = static_cast<char>(other.back() + 1);
    const ClipItem first = imageClip(other);
    const ClipItem second = imageClip(image);
    store.insertAtTop(first, other);
    store.insertAtTop(second, image);
    // Both while it waits to be written and once it lies in the file; also while it could still be brought back.
    QVERIFY(findImage(store, image, {first.id, second.id}) == second.id);
    store.remove({second.id}, ClipboardStore::Erasure::Undoable);
    QVERIFY(store.flush());
    QVERIFY(findImage(store, image, {first.id, second.id}) == second.id);
    store.settle();
    QVERIFY(!findImage(store, image, {first.id, second.id}));
    QVERIFY(!findImage(store, image.chopped(1), {first.id}));
    QVERIFY(!readImage(store, second.id));
}

void ClipboardStoreTest::keepsFilesPrivateAndClearsUnfinishedOnes()
{
    const QString folder = m_folder->path() + QStringLiteral("/new");
    {
        ClipboardStore store(folder);
        store.load();
        ExpectedHistory expected(store);
        const QByteArray image = noise(ClipboardStore::kWholeRewriteLimit, 1);
        expected.insert(imageClip(image), image);
        QVERIFY(store.flush());
        expected.insert(textClip(QStringLiteral("secret")));
        QVERIFY(store.flush());
        for (const QString &name :
             {folder + QStringLiteral("/clipboard.json"), folder + QStringLiteral("/clipboard.journal")}) {
            struct stat status = {};
            QCOMPARE(::stat(qPrintable(name), &status), 0);
            QCOMPARE(status.st_mode & 0777, 0600U);
        }
        struct stat status = {};
        QCOMPARE(::stat(qPrintable(folder), &status), 0);
        QCOMPARE(status.st_mode & 0777, 0700U);
    }
    writeFile(folder + QStringLiteral("/.clipboard.json.a1B2c3"), "secret");
    ClipboardStore store(folder);
    QCOMPARE(store.load().size(), 2);
    QVERIFY(!QFileInfo::exists(folder + QStringLiteral("/.clipboard.json.a1B2c3")));
}

OSTRELLE_TEST(ClipboardStoreTest)
#include "ClipboardStoreTest.moc"
