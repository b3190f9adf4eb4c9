#include "clipboard/ClipboardService.h"

#include "core/SettingsStore.h"
#include "foundation/DefaultsDatabase.h"
#include "records/ClipboardStore.h"
#include "support/FakeClipImages.h"
#include "support/FakeClipboardPort.h"
#include "support/ManualTaskScheduler.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

QByteArray bitmap(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "bmp");
    return buffer.data();
}

FakeClipboardPort::Owner ownerOfJpeg(const QByteArray &bytes)
{
    FakeClipboardPort::Owner owner;
    owner.jpeg = bytes;
    return owner;
}

void expectPassedOver(const char *reason)
{
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable(QStringLiteral("A copied image is not recorded: ") + QString::fromLatin1(reason)));
}

} // namespace

/// The whole way of a copy, from another program to the list and the store, and back.
class ClipboardServiceTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void recordsNothingThatWasCopiedBeforeOrMeanwhile();
    void recordsWhatIsCopiedWhileTheHistoryIsLoaded();
    void pollsAtTheNextTickAndOnlyWhenSomethingWasAnnounced();
    void keepsConcealedCopiesOut_data();
    void keepsConcealedCopiesOut();
    void keepsExcludedApplicationsOut();
    void prefersFilesThenImagesThenText();
    void convertsOtherImagesWhereNothingElseIs();
    void passesOverImagesThatCannotBeConverted();
    void newerCopiesDoNotWaitForAConversion();
    void repeatsMoveToTheTop();
    void keepsPinnedItemsBeyondTheLimit();
    void ownWritesAreNotRecorded();
    void writesImagesBackFromTheStore();
    void keepsTheOrderOfCopiesWhateverReadingTakes();
    void recordsTheNextCopyAfterAHungOwner();
    void undoBringsBackWhatWasErased();
    void undoLapses();
    void aRepeatOfAnErasedItemIsNotDoubledByUndo();
    void finalErasuresAreAcknowledgedOffTheDisk();
    void erasureCoversWhatIsUnderWay();
    void triesAgainWhileSavingFails();

private:
    QStringList titles() const;
    QStringList storedTitles();
    /// Lets the next poll and all answers happen.
    void wait();
    void copyText(const QString &text);
    QString storePath() const { return m_folder->path() + QStringLiteral("/store"); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ManualTaskScheduler> m_scheduler;
    std::unique_ptr<FakeClipboardPort> m_port;
    std::unique_ptr<FakeClipImages> m_images;
    std::unique_ptr<DefaultsDatabase> m_database;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<ClipboardStore> m_store;
    std::unique_ptr<ClipboardService> m_service;
};

void ClipboardServiceTest::init()
{
    TestBase::init();
    m_folder = std::make_unique<QTemporaryDir>();
    m_scheduler = std::make_unique<ManualTaskScheduler>();
    m_port = std::make_unique<FakeClipboardPort>(*m_scheduler);
    m_images = std::make_unique<FakeClipImages>(*m_scheduler);
    m_database = std::make_unique<DefaultsDatabase>(m_folder->path() + QStringLiteral("/config/defaults.json"));
    m_settings = std::make_unique<SettingsStore>(*m_database);
    m_store = std::make_unique<ClipboardStore>(storePath());
    m_port->copyText(QStringLiteral("before launch"));
    m_service = std::make_unique<ClipboardService>(*m_settings, *m_port, *m_store, *m_scheduler, *m_images);
    m_service->finishLoading();
    m_service->start();
}

void ClipboardServiceTest::cleanup()
{
    m_service.reset();
    m_store.reset();
    m_settings.reset();
    m_database.reset();
    m_images.reset();
    m_port.reset();
}

QStringList ClipboardServiceTest::titles() const
{
    QStringList result;
    for (const ClipItem &item : m_service->items())
        result.append(title(item));
    return result;
}

QStringList ClipboardServiceTest::storedTitles()
{
    m_store->flush();
    QTemporaryDir copy;
    QFile::copy(storePath() + QStringLiteral("/clipboard.json"), copy.path() + QStringLiteral("/clipboard.json"));
    QStringList result;
    for (const ClipItem &item : ClipboardStore(copy.path()).load())
        result.append(title(item));
    return result;
}

void ClipboardServiceTest::wait()
{
    m_scheduler->advance(500ms);
    m_store->flush();
    QCoreApplication::processEvents();
}

void ClipboardServiceTest::copyText(const QString &text)
{
    m_port->copyText(text);
    wait();
}

void ClipboardServiceTest::recordsNothingThatWasCopiedBeforeOrMeanwhile()
{
    wait();
    QVERIFY(titles().isEmpty());
    m_settings->setClipboardEnabled(false);
    copyText(QStringLiteral("while off"));
    m_settings->setClipboardEnabled(true);
    wait();
    QVERIFY(titles().isEmpty());
    // What is being read when the user turns recording off is dropped as well.
    FakeClipboardPort::Owner slow;
    slow.text = QStringLiteral("slow");
    slow.readDelay = 2s;
    m_port->copy(slow);
    m_scheduler->advance(1s);
    m_settings->setClipboardEnabled(false);
    m_settings->setClipboardEnabled(true);
    m_scheduler->advance(5s);
    QVERIFY(titles().isEmpty());
    copyText(QStringLiteral("on"));
    QCOMPARE(titles(), QStringList(QStringLiteral("on")));
    QCOMPARE(storedTitles(), titles());
}

void ClipboardServiceTest::recordsWhatIsCopiedWhileTheHistoryIsLoaded()
{
    for (const char *name : {"a", "b"})
        copyText(QString::fromLatin1(name));
    m_service.reset();
    m_store = std::make_unique<ClipboardStore>(storePath());
    m_service = std::make_unique<ClipboardService>(*m_settings, *m_port, *m_store, *m_scheduler, *m_images);
    m_service->start();
    int listed = 0;
    m_service->whenLoaded(m_service.get(), [&] { listed = static_cast<int>(m_service->items().size()); });
    m_port->copyText(QStringLiteral("a"));
    m_scheduler->advance(500ms);
    QVERIFY(!m_service->isLoaded() && m_service->items().isEmpty());
    QTRY_COMPARE(titles().join(u','), QStringLiteral("a,b"));
    QCOMPARE(listed, 2);
    QCOMPARE(storedTitles(), titles());
}

void ClipboardServiceTest::pollsAtTheNextTickAndOnlyWhenSomethingWasAnnounced()
{
    m_scheduler->advance(60s);
    QCOMPARE(m_scheduler->firedCount(), 0);
    m_scheduler->advance(300ms);
    m_port->copyText(QStringLiteral("a"));
    m_scheduler->advance(199ms);
    QVERIFY(titles().isEmpty());
    m_scheduler->advance(1ms);
    QCOMPARE(titles(), QStringList(QStringLiteral("a")));
    const int fired = m_scheduler->firedCount();
    m_scheduler->advance(3600s);
    QCOMPARE(m_scheduler->firedCount(), fired);
}

void ClipboardServiceTest::keepsConcealedCopiesOut_data()
{
    QTest::addColumn<QString>("marker");
    QTest::addColumn<bool>("isKept");
    for (const char *marker : {"org.nspasteboard.ConcealedType", "org.nspasteboard.TransientType",
                               "org.nspasteboard.AutoGeneratedType", "com.agilebits.onepassword"})
        QTest::newRow(marker) << QString::fromLatin1(marker) << false;
    QTest::newRow("other") << QStringLiteral("org.nspasteboard.concealedtype") << true;
}

void ClipboardServiceTest::keepsConcealedCopiesOut()
{
    QFETCH(QString, marker);
    FakeClipboardPort::Owner owner;
    owner.types = {marker};
    owner.text = QStringLiteral("a");
    m_port->copy(owner);
    wait();
    QTEST(!titles().isEmpty(), "isKept");
    QCOMPARE(m_port->readCount() > 0, !titles().isEmpty());
    m_settings->setIgnoreConcealed(false);
    wait(); // not later either
    QTEST(!titles().isEmpty(), "isKept");
    m_port->copy(owner);
    wait();
    QCOMPARE(titles().size(), 1);
}

void ClipboardServiceTest::keepsExcludedApplicationsOut()
{
    m_port->frontmost = Application{{QStringLiteral("org.x.vault"), QStringLiteral("com.bitwarden.desktop")}, {}};
    m_port->copyText(QStringLiteral("secret"));
    // Who is in front when it is read does not matter.
    m_port->frontmost = Application{{QStringLiteral("Com.Bitwarden.Desktop")}, QStringLiteral("Editor")};
    wait();
    QVERIFY(titles().isEmpty());
    QCOMPARE(m_port->readCount(), 0);
    copyText(QStringLiteral("plain"));
    QCOMPARE(titles(), QStringList(QStringLiteral("plain")));
    QCOMPARE(m_service->items().first().appName, QStringLiteral("Editor"));
}

void ClipboardServiceTest::prefersFilesThenImagesThenText()
{
    FakeClipboardPort::Owner owner;
    owner.text = QStringLiteral(" https://a.b \n");
    owner.tiff = QByteArray("tiff");
    owner.png = QByteArray("png");
    owner.files = QStringList{QStringLiteral("/x/a"), QStringLiteral("/x/b")};
    m_port->copy(owner);
    wait();
    owner.files = QStringList();
    m_port->copy(owner);
    wait();
    owner.png = QByteArray(ClipboardPort::kReadCap + 1, 'x');
    m_port->copy(owner);
    wait();
    owner.tiff = owner.png;
    m_port->copy(owner);
    wait();
    owner.text = QStringLiteral(" \n\t");
    m_port->copy(owner);
    wait();
    const QList<ClipItem> items = m_service->items();
    QCOMPARE(items.size(), 4);
    QCOMPARE(items[0].kind, ClipItem::Kind::Link);
    QCOMPARE(items[0].text, QStringLiteral(" https://a.b \n"));
    QCOMPARE(items[1].image->type, QStringLiteral("public.tiff"));
    QCOMPARE(items[2].image->type, QStringLiteral("public.png"));
    QCOMPARE(items[3].paths->size(), 2);
}

void ClipboardServiceTest::convertsOtherImagesWhereNothingElseIs()
{
    m_port->frontmost = Application{{}, QStringLiteral("Camera")};
    FakeClipboardPort::Owner owner = ownerOfJpeg(bitmap({40, 30}));
    owner.text = QStringLiteral("words");
    m_port->copy(owner);
    wait();
    QCOMPARE(titles(), QStringList(QStringLiteral("words")));
    QCOMPARE(m_images->conversionCount(), 0);

    // Whatever comes first is useless; so is one of the three.
    owner.files = QStringList();
    owner.png = QByteArray(ClipboardPort::kReadCap + 1, 'x');
    owner.text = QStringLiteral(" \n");
    owner.jpeg = QByteArray("no picture");
    owner.webp = bitmap({40, 30});
    m_port->copy(owner);
    wait();
    m_port->copyText(QStringLiteral("between"));
    wait();
    m_port->copy(ownerOfJpeg(bitmap({40, 30})));
    wait();
    wait();
    const QList<ClipItem> items = m_service->items();
    QCOMPARE(titles(), QStringList({QStringLiteral("Image"), QStringLiteral("between"), QStringLiteral("words")}));
    QCOMPARE(items[0].image->type, QStringLiteral("public.png"));
    QCOMPARE(items[0].appName, QStringLiteral("Camera"));
    std::optional<QByteArray> stored;
    m_service->readImage(items[0].id, this, [&](const auto &bytes) { stored = bytes; });
    QTRY_VERIFY(stored);
    QCOMPARE(stored->size(), items[0].image->byteSize);
    QCOMPARE(QImage::fromData(*stored, "png").size(), QSize(40, 30));

    const int converted = m_images->conversionCount();
    m_port->frontmost = Application{{QStringLiteral("com.bitwarden.desktop")}, {}};
    m_port->copy(ownerOfJpeg(bitmap({50, 30})));
    wait();
    QCOMPARE(m_images->conversionCount(), converted);
    QCOMPARE(m_service->items().size(), 3);
}

void ClipboardServiceTest::passesOverImagesThatCannotBeConverted()
{
    FakeClipboardPort::Owner owner = ownerOfJpeg("no picture");
    owner.bmp = QByteArray(ClipboardPort::kReadCap + 1, 'x');
    owner.webp = QByteArray();
    expectPassedOver("it cannot be read, is broken or is too large");
    m_port->copy(owner);
    wait();
    QCOMPARE(m_images->conversionCount(), 1);
    QVERIFY(titles().isEmpty());
    copyText(QStringLiteral("next"));
    QCOMPARE(storedTitles(), QStringList(QStringLiteral("next")));
}

void ClipboardServiceTest::newerCopiesDoNotWaitForAConversion()
{
    m_images->delay = 10s;
    m_port->copy(ownerOfJpeg(bitmap({40, 30})));
    wait();
    expectPassedOver("something else was copied before it was converted");
    m_port->copyText(QStringLiteral("newer"));
    QCoreApplication::processEvents();
    m_scheduler->advance(500ms);
    QCOMPARE(titles(), QStringList(QStringLiteral("newer")));
    // Turned off meanwhile: dropped, and nothing is left to come.
    m_port->copy(ownerOfJpeg(bitmap({40, 30})));
    wait();
    m_settings->setClipboardEnabled(false);
    QCOMPARE(m_scheduler->pendingCount(), 0);
    m_settings->setClipboardEnabled(true);
    m_scheduler->advance(20s);
    QCOMPARE(titles(), QStringList(QStringLiteral("newer")));
}

void ClipboardServiceTest::repeatsMoveToTheTop()
{
    m_port->frontmost = Application{{}, QStringLiteral("First")};
    copyText(QStringLiteral("caf\u00e9"));
    m_port->copyPng("image one");
    wait();
    m_port->copyPng("image two");
    wait();
    const ClipItem text = m_service->items()[2];
    const ClipItem image = m_service->items()[1];
    m_service->togglePin(text.id);
    m_port->frontmost.reset();

    QSignalSpy inserted(m_service.get(), &ClipboardService::itemInserted);
    QSignalSpy moved(m_service.get(), &ClipboardService::itemMoved);
    copyText(QStringLiteral("cafe\u0301"));
    m_port->copyPng("image one");
    wait();
    QCOMPARE(inserted.size(), 0);
    QCOMPARE(moved.size(), 2);
    const QList<ClipItem> items = m_service->items();
    QCOMPARE(items.size(), 3);
    QCOMPARE(items[0].id, image.id);
    QCOMPARE(items[1].id, text.id);
    QCOMPARE(items[1].text, text.text);
    QCOMPARE(items[1].appName, QStringLiteral("First"));
    QVERIFY(items[1].pinned && items[1].date >= text.date);
    QCOMPARE(storedTitles(), titles());
}

void ClipboardServiceTest::keepsPinnedItemsBeyondTheLimit()
{
    m_settings->setClipboardLimit(3);
    for (const char *name : {"a", "b", "c"})
        copyText(QString::fromLatin1(name));
    QCOMPARE(titles().join(u""), QStringLiteral("cba"));
    m_service->togglePin(m_service->items()[2].id);
    for (const char *name : {"d", "e"})
        copyText(QString::fromLatin1(name));
    QCOMPARE(titles().join(u""), QStringLiteral("edca"));
    // Unpinning drops nothing; the next copy does.
    m_service->togglePin(m_service->items()[3].id);
    QCOMPARE(titles().size(), 4);
    copyText(QStringLiteral("f"));
    QCOMPARE(titles().join(u""), QStringLiteral("fed"));
    m_settings->setClipboardLimit(0);
    copyText(QStringLiteral("g"));
    QVERIFY(titles().isEmpty());
    QCOMPARE(storedTitles(), titles());
}

void ClipboardServiceTest::ownWritesAreNotRecorded()
{
    copyText(QStringLiteral("a"));
    copyText(QStringLiteral(" b "));
    m_service->copy(m_service->items()[1].id);
    QCOMPARE(std::get<QString>(*m_port->offer()), QStringLiteral("a"));
    wait();
    QCOMPARE(titles().join(u""), QStringLiteral("ba"));
    // Others of the program's writes are copies like any.
    m_port->write(QStringLiteral("#ff0000"));
    wait();
    QCOMPARE(titles().first(), QStringLiteral("#ff0000"));
    // A copy right after an own write, before any poll.
    m_service->copy(m_service->items()[1].id);
    m_port->copyText(QStringLiteral("c"));
    wait();
    QCOMPARE(titles().first(), QStringLiteral("c"));
}

void ClipboardServiceTest::writesImagesBackFromTheStore()
{
    const QByteArray image(100'000, 'i');
    m_port->copyPng(image);
    wait();
    copyText(QStringLiteral("text"));
    const QUuid imageId = m_service->items()[1].id;
    using Outcome = ClipboardService::CopyOutcome;
    QList<Outcome> outcomes;
    const auto tell = [&](Outcome outcome) { outcomes.append(outcome); };
    m_service->copy(imageId, tell);
    QVERIFY(outcomes.isEmpty());
    wait();
    QCOMPARE(outcomes, QList<Outcome>{Outcome::Done});
    QCOMPARE(std::get<ClipboardImage>(*m_port->offer()).bytes, image);
    QCOMPARE(m_service->items().size(), 2);
    // The later choice wins, though the image's bytes arrive after it.
    m_service->copy(imageId, tell);
    m_service->copy(m_service->items()[0].id, tell);
    wait();
    QCOMPARE(outcomes, (QList<Outcome>{Outcome::Done, Outcome::Done, Outcome::Overtaken}));
    QCOMPARE(std::get<QString>(*m_port->offer()), QStringLiteral("text"));
    // And so does what another program copies meanwhile.
    m_service->copy(imageId, tell);
    copyText(QStringLiteral("theirs"));
    wait();
    QCOMPARE(outcomes.last(), Outcome::Overtaken);
    QVERIFY(!m_port->offer());
    QCOMPARE(titles().first(), QStringLiteral("theirs"));
}

void ClipboardServiceTest::keepsTheOrderOfCopiesWhateverReadingTakes()
{
    FakeClipboardPort::Owner slow;
    slow.png = QByteArray(1000, 'x');
    slow.text = QStringLiteral("alternative");
    slow.readDelay = 400ms;
    m_port->copy(slow);
    m_scheduler->advance(950ms); // read, but perhaps not compared yet
    copyText(QStringLiteral("quick"));
    wait();
    QCOMPARE(titles(), QStringList({QStringLiteral("quick"), QStringLiteral("Image")}));
    // Replaced while it is being read: gone, and what replaced it is there.
    slow.readDelay = 2s;
    slow.png = QByteArray(1000, 'y');
    m_port->copy(slow);
    m_scheduler->advance(700ms);
    copyText(QStringLiteral("second"));
    m_scheduler->advance(5s);
    QCOMPARE(titles().join(u','), QStringLiteral("second,quick,Image"));
}

void ClipboardServiceTest::recordsTheNextCopyAfterAHungOwner()
{
    FakeClipboardPort::Owner hung;
    hung.hangs = true;
    hung.text = QStringLiteral("never");
    hung.png = QByteArray("never");
    m_port->copy(hung);
    m_scheduler->advance(1s);
    copyText(QStringLiteral("honest"));
    m_scheduler->advance(FakeClipboardPort::kDeadline);
    QCOMPARE(titles(), QStringList(QStringLiteral("honest")));
}

void ClipboardServiceTest::undoBringsBackWhatWasErased()
{
    for (const char *name : {"a", "b", "c", "d"})
        copyText(QString::fromLatin1(name));
    m_port->copyPng("picture");
    wait();
    m_service->togglePin(m_service->items()[2].id);
    const QList<ClipItem> before = m_service->items();
    m_service->remove(before[1].id);
    QVERIFY(m_service->canUndo());
    m_service->undo();
    QVERIFY(m_service->items() == before);
    QVERIFY(!m_service->canUndo());

    m_service->clearUnpinned();
    QCOMPARE(titles(), QStringList(QStringLiteral("c")));
    m_store->flush();
    copyText(QStringLiteral("new"));
    m_service->undo();
    QCOMPARE(titles().join(u','), QStringLiteral("new,Image,d,c,b,a"));
    QCOMPARE(storedTitles(), titles());
    std::optional<QByteArray> picture;
    m_service->readImage(before[0].id, this, [&](const std::optional<QByteArray> &bytes) { picture = bytes; });
    wait();
    QCOMPARE(picture, QByteArray("picture"));
}

void ClipboardServiceTest::undoLapses()
{
    for (const char *name : {"a", "b"})
        copyText(QString::fromLatin1(name));
    m_service->remove(m_service->items()[0].id);
    m_scheduler->advance(29s);
    QVERIFY(m_service->canUndo());
    m_scheduler->advance(1s);
    QVERIFY(!m_service->canUndo());
    m_service->remove(m_service->items()[0].id);
    m_service->settle();
    m_service->undo();
    QVERIFY(titles().isEmpty());
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void ClipboardServiceTest::aRepeatOfAnErasedItemIsNotDoubledByUndo()
{
    m_port->copyPng("picture");
    wait();
    copyText(QStringLiteral("a"));
    copyText(QStringLiteral("b"));
    m_service->clearUnpinned();
    m_port->copyPng("picture");
    wait();
    copyText(QStringLiteral("a"));
    m_service->undo();
    QCOMPARE(titles().join(u','), QStringLiteral("a,Image,b"));
    QCOMPARE(storedTitles(), titles());
}

void ClipboardServiceTest::finalErasuresAreAcknowledgedOffTheDisk()
{
    for (const char *name : {"needle one", "needle two", "kept"})
        copyText(QString::fromLatin1(name));
    m_service->togglePin(m_service->items()[0].id);
    const auto stored = [this] {
        QFile file(storePath() + QStringLiteral("/clipboard.json"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    std::optional<bool> isSaved;
    const auto saved = [&isSaved](bool is) { isSaved = is; };
    m_service->erase(m_service->items()[1].id, saved);
    QTRY_COMPARE(isSaved, true);
    QVERIFY(!stored().contains("two") && stored().contains("one"));
    m_service->remove(m_service->items()[1].id);
    isSaved.reset();
    m_service->eraseAll(false, saved);
    QVERIFY(!m_service->canUndo());
    QTRY_COMPARE(isSaved, true);
    QVERIFY(!stored().contains("one") && stored().contains("kept"));
    // A folder in the way of the array: nobody is told that it is gone.
    QVERIFY(QFile::remove(storePath() + QStringLiteral("/clipboard.json")));
    QVERIFY(QDir().mkpath(storePath() + QStringLiteral("/clipboard.json/x")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("The clipboard history is not saved: .*")));
    isSaved.reset();
    m_service->eraseAll(true, saved);
    QTRY_COMPARE(isSaved, false);
    QVERIFY(QDir(storePath() + QStringLiteral("/clipboard.json")).removeRecursively());
    m_service->eraseAll(true, saved);
    QTRY_COMPARE(isSaved, true);
    QCOMPARE(stored(), QByteArray("[]"));
}

void ClipboardServiceTest::erasureCoversWhatIsUnderWay()
{
    m_port->copyPng("image");
    wait();
    m_port->copyPng("image");
    m_scheduler->advance(500ms); // is being compared
    FakeClipboardPort::Owner slow;
    slow.text = QStringLiteral("being read");
    slow.readDelay = 800ms;
    m_port->copy(slow);
    m_scheduler->advance(700ms);
    m_port->copyText(QStringLiteral("not noticed yet"));
    m_service->eraseAll(true);
    wait();
    m_scheduler->advance(5s);
    QVERIFY(titles().isEmpty());
    copyText(QStringLiteral("next"));
    QCOMPARE(titles(), QStringList(QStringLiteral("next")));
    QCOMPARE(storedTitles(), titles());
}

void ClipboardServiceTest::triesAgainWhileSavingFails()
{
    // A file where the folder should be.
    QFile obstacle(storePath());
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("The clipboard history is not saved: .*")));
    copyText(QStringLiteral("a"));
    QCOMPARE(m_scheduler->pendingCount(), 1);
    const int fired = m_scheduler->firedCount();
    m_scheduler->advance(14s);
    QCOMPARE(m_scheduler->firedCount(), fired + 1);
    m_scheduler->advance(3600s);
    QVERIFY(m_scheduler->firedCount() < fired + 20); // less and less often
    QVERIFY(obstacle.remove());
    m_scheduler->advance(5min);
    m_store->flush();
    QCoreApplication::processEvents();
    QCOMPARE(m_scheduler->pendingCount(), 0);
    QCOMPARE(storedTitles(), QStringList(QStringLiteral("a")));
}

OSTRELLE_TEST(ClipboardServiceTest)
#include "ClipboardServiceTest.moc"
