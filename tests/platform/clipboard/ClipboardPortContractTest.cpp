#include "ContractClipboard.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

namespace ostrelle {

using Outcome = ClipboardContent::Outcome;

/// What every clipboard does.
class ClipboardPortContractTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void tellsAndReadsWhatAnotherProgramCopies()
    {
        const auto clipboard = ContractClipboard::make();
        ClipboardPort &port = clipboard->port();
        const QSignalSpy changed(&port, &ClipboardPort::changed);
        const qint64 before = port.changeCount();
        const auto marker = QStringLiteral("org.nspasteboard.TransientType");
        clipboard->copyElsewhere(QStringLiteral("grüße"), "picture", marker);
        QVERIFY(clipboard->comesTrue([&] { return port.changeCount() == before + 1; }));
        QCOMPARE(changed.count(), 1);

        std::optional<std::optional<ClipboardSnapshot>> snapshot;
        port.snapshot(this, [&](const auto &answer) { snapshot = answer; });
        QVERIFY(!snapshot); // never from within the call
        QVERIFY(clipboard->comesTrue([&] { return snapshot.has_value(); }));
        QVERIFY(snapshot->has_value());
        QCOMPARE((*snapshot)->changeCount, before + 1);
        QCOMPARE((*snapshot)->formats.count(), 2); // in any order
        QVERIFY((*snapshot)->formats.contains(ClipboardFormat::Png));
        QVERIFY((*snapshot)->formats.contains(ClipboardFormat::Text));
        QVERIFY((*snapshot)->types.contains(marker));
        QCOMPARE(read(*clipboard, before + 1, ClipboardFormat::Png).bytes, "picture");
        QCOMPARE(read(*clipboard, before + 1, ClipboardFormat::Text).text, QStringLiteral("grüße"));
        QCOMPARE(read(*clipboard, before + 1, ClipboardFormat::Files).outcome, Outcome::Absent);
    }

    void readsImagesOfOtherFormats()
    {
        const auto clipboard = ContractClipboard::make();
        const qint64 count = clipboard->port().changeCount() + 1;
        clipboard->copyImageElsewhere("a photograph", "a bitmap", "a web picture");
        QVERIFY(clipboard->comesTrue([&] { return clipboard->port().changeCount() == count; }));
        std::optional<std::optional<ClipboardSnapshot>> snapshot;
        clipboard->port().snapshot(this, [&](const auto &answer) { snapshot = answer; });
        QVERIFY(clipboard->comesTrue([&] { return snapshot.has_value(); }));
        QVERIFY(snapshot->has_value());
        QCOMPARE((*snapshot)->formats.count(), 3);
        QCOMPARE(read(*clipboard, count, ClipboardFormat::Jpeg).bytes, "a photograph");
        QCOMPARE(read(*clipboard, count, ClipboardFormat::Bmp).bytes, "a bitmap");
        QCOMPARE(read(*clipboard, count, ClipboardFormat::WebP).bytes, "a web picture");
        QCOMPARE(read(*clipboard, count, ClipboardFormat::Png).outcome, Outcome::Absent);
    }

    void readsNothingOfWhatWasThereBefore()
    {
        const auto clipboard = ContractClipboard::make();
        const qint64 before = clipboard->port().changeCount();
        clipboard->copyElsewhere(QStringLiteral("old"), "old", QStringLiteral("a/marker"));
        QVERIFY(clipboard->comesTrue([&] { return clipboard->port().changeCount() == before + 1; }));
        clipboard->copyElsewhere(QStringLiteral("new"), "new", QStringLiteral("a/marker"));
        QVERIFY(clipboard->comesTrue([&] { return clipboard->port().changeCount() == before + 2; }));
        QCOMPARE(read(*clipboard, before + 1, ClipboardFormat::Text).outcome, Outcome::Gone);
        QCOMPARE(read(*clipboard, before + 2, ClipboardFormat::Text).text, QStringLiteral("new"));
    }

    void countsItsOwnWriteOnceAtTheCall()
    {
        const auto clipboard = ContractClipboard::make();
        ClipboardPort &port = clipboard->port();
        const qint64 before = port.changeCount();
        const QSignalSpy changed(&port, &ClipboardPort::changed);
        QCOMPARE(port.write(QStringLiteral("mine")), before + 1);
        QCOMPARE(port.changeCount(), before + 1);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(read(*clipboard, before + 1, ClipboardFormat::Text).text, QStringLiteral("mine"));
        clipboard->copyElsewhere(QStringLiteral("theirs"), "theirs", QStringLiteral("a/marker"));
        QVERIFY(clipboard->comesTrue([&] { return port.changeCount() > before + 1; }));
        QCOMPARE(port.changeCount(), before + 2);
        QCOMPARE(read(*clipboard, before + 2, ClipboardFormat::Text).text, QStringLiteral("theirs"));
    }

    void answersOnlyTheLiving()
    {
        const auto clipboard = ContractClipboard::make();
        clipboard->port().write(QStringLiteral("mine"));
        bool wasCalled = false;
        {
            QObject context;
            clipboard->port().snapshot(&context, [&](const auto &) { wasCalled = true; });
            clipboard->port().read(clipboard->port().changeCount(), ClipboardFormat::Text, &context,
                                   [&](const auto &) { wasCalled = true; });
        }
        read(*clipboard, clipboard->port().changeCount(), ClipboardFormat::Text);
        QVERIFY(!wasCalled);
    }

private:
    ClipboardContent read(ContractClipboard &clipboard, qint64 changeCount, ClipboardFormat format)
    {
        std::optional<ClipboardContent> content;
        clipboard.port().read(changeCount, format, this, [&](const auto &answer) { content = answer; });
        return clipboard.comesTrue([&] { return content.has_value(); }) ? *content : ClipboardContent();
    }
};

} // namespace ostrelle

using ostrelle::ClipboardPortContractTest;
OSTRELLE_TEST(ClipboardPortContractTest)

#include "ClipboardPortContractTest.moc"
