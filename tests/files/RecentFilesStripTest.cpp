#include "files/RecentFilesStrip.h"
#include "FilesFixture.h"
#include "PanelFixture.h"
#include "StandInThumbnails.h"
#include "files/ForgetBadge.h"
#include "files/RecentChip.h"
#include "files/RecentFiles.h"
#include "files/RecentRowsView.h"
#include "files/RecentThumbnails.h"
#include "notch/controls/PlayBadge.h"
#include "notch/controls/SectionLabel.h"
#include "notch/controls/SoftButton.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <optional>

using namespace ostrelle;
using namespace std::chrono_literals;

class RecentFilesStripTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void showsTheNewestAsChips_data();
    void showsTheNewestAsChips();
    void listsThemAllAfterAnyRunOfEdits();
    void chipsOfferTheirBadgesUnderThePointer();
    void chipsWorkByKeys();
    void whatIsGoneIsMissing();
    void showsWhatIsPlaying();
    void expandsIntoAList();
    void rowsWorkByPointer();
    void rowsWorkByKeys();
    void asksForPicturesOfWhatIsSeen();
    void picturesComeBackIntoSight();
    void speaksToAssistiveTechnology();
    void isIdleAtRest();
};

namespace {

/// The strip on files in "/a", the first one newest. Choosing, forgetting and clearing are done as a tool does them.
struct OpenStrip : FilesFixture
{
    FrameClock frames{clock};
    NotchAppearance appearance{settings, platform.appearance()};
    StandInThumbnails source;
    RecentThumbnails thumbnails{source};
    RecentFiles recents{database, QStringLiteral("audioInfo.recents"), 20};
    QWidget window;
    std::optional<RecentFilesStrip> view;
    QStringList opened;

    enum class Kind { Sounds, Pictures };

    explicit OpenStrip(const QString &letters, Kind kind = Kind::Sounds)
    {
        QStringList paths;
        for (auto letter = letters.crbegin(); letter != letters.crend(); ++letter) {
            files.add(pathOf(*letter).toUtf8());
            paths.append(pathOf(*letter));
            recents.record(paths.last(), QStringLiteral("03:25 · WAV"));
        }
        find(paths);
        const RecentListModel::Surroundings around{.recents = recents,
                                                   .presence = presence,
                                                   .preview = kind == Kind::Sounds ? &preview : nullptr,
                                                   .thumbnails = kind == Kind::Pictures ? &thumbnails : nullptr};
        view.emplace(ControlContext{appearance, frames}, around, QStringLiteral("waveform"), &window);
        QObject::connect(&*view, &RecentFilesStrip::opened, [this](const RecentFile &file) { opened += file.name; });
        QObject::connect(&*view, &RecentFilesStrip::forgotten,
                         [this](const RecentFile &file) { recents.remove(file.path); });
        QObject::connect(&*view, &RecentFilesStrip::clearWanted, [this] { recents.clear(); });
        QObject::connect(&*view, &RecentFilesStrip::expansionWanted, [this](bool expanded) {
            view->setExpanded(expanded);
            view->resize(588, expanded ? 168 : 82);
        });
        view->resize(588, 82);
        window.resize(588, 168);
        window.show();
        window.activateWindow();
        const bool isActive = QTest::qWaitForWindowActive(&window);
        if (!isActive)
            qFatal("the window does not become active");
        settle();
    }

    static QString pathOf(QChar letter) { return QStringLiteral("/a/") + letter + QStringLiteral(".wav"); }

    void find(const QStringList &paths)
    {
        bool isFound = false;
        presence.ask(paths, &window, [&](const QList<FileFacts> &) { isFound = true; });
        QTRY_VERIFY(isFound);
    }
    void settle()
    {
        for (int i = 0; i < 4; ++i) {
            QCoreApplication::processEvents();
            clock.advance(400ms);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    /// The chips that are to stay, from left to right.
    QList<RecentChip *> chips()
    {
        QList<RecentChip *> chips;
        for (auto *chip : view->findChildren<RecentChip *>()) {
            if (chip->isVisible() && chip->isEnabled())
                chips.append(chip);
        }
        std::sort(chips.begin(), chips.end(), [](const auto *a, const auto *b) { return a->x() < b->x(); });
        return chips;
    }
    QString chipNames()
    {
        QString names;
        for (const RecentChip *chip : chips())
            names += chip->entry().name.front();
        return names;
    }
    QString listed()
    {
        QString names;
        for (const RecentFile &file : recents.items())
            names += file.name.front();
        return names;
    }
    QStringList buttons()
    {
        QStringList texts;
        for (const auto *button : view->findChildren<SoftButton *>()) {
            if (button->isVisible())
                texts.append(button->accessibleName());
        }
        return texts;
    }
    void press(const QString &name)
    {
        for (auto *button : view->findChildren<SoftButton *>()) {
            if (button->isVisible() && button->accessibleName() == name) {
                button->click();
                settle();
                return;
            }
        }
        QFAIL(qPrintable(name));
    }
    QString title() { return view->findChild<SectionLabel *>()->text(); }
    RecentRowsView &rows() { return view->rows(); }
    QPointF inRow(int row, double x) { return {x, rows().rowRect(row).center().y()}; }
    void mouse(QEvent::Type type, const QPointF &position)
    {
        const bool isMove = type == QEvent::MouseMove;
        QMouseEvent event(type, position, rows().viewport()->mapToGlobal(position),
                          isMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(rows().viewport(), &event);
        settle();
    }
    void click(const QPointF &position)
    {
        mouse(QEvent::MouseMove, position);
        mouse(QEvent::MouseButtonPress, position);
        mouse(QEvent::MouseButtonRelease, position);
    }
    void key(Qt::Key key)
    {
        QTest::keyClick(&rows(), key);
        settle();
    }
};

} // namespace

void RecentFilesStripTest::showsTheNewestAsChips_data()
{
    QTest::addColumn<QString>("files");
    QTest::addColumn<QString>("chips");
    QTest::addColumn<QStringList>("buttons");
    const auto all = [](int count) { return QStringLiteral("Show all · %1").arg(count); };
    const QString clear = QStringLiteral("Clear");
    QTest::newRow("none") << QString() << QString() << QStringList{clear};
    QTest::newRow("one") << QStringLiteral("A") << QStringLiteral("A") << QStringList{clear};
    QTest::newRow("two") << QStringLiteral("AB") << QStringLiteral("AB") << QStringList{all(2), clear};
    QTest::newRow("three") << QStringLiteral("ABC") << QStringLiteral("ABC") << QStringList{all(3), clear};
    QTest::newRow("five") << QStringLiteral("ABCDE") << QStringLiteral("ABC")
                          << QStringList{all(5), clear, QStringLiteral("2 more · show all")};
}

void RecentFilesStripTest::showsTheNewestAsChips()
{
    QFETCH(QString, files);
    OpenStrip strip(files);
    QTEST(strip.chipNames(), "chips");
    QTEST(strip.buttons(), "buttons");
    QCOMPARE(strip.title(), QStringLiteral("Recent"));
    for (int i = 0; i < strip.chips().size(); ++i) {
        const QRect place(strip.chips()[i]->mapTo(&*strip.view, QPoint()), strip.chips()[i]->size());
        QCOMPARE(place.adjusted(0, RecentChip::kOverhang, -RecentChip::kOverhang, 0), QRect(14 + i * 166, 30, 158, 42));
    }
}

void RecentFilesStripTest::listsThemAllAfterAnyRunOfEdits()
{
    OpenStrip strip(QStringLiteral("ABCDE"));
    const auto &model = strip.view->recents();
    const QAbstractItemModelTester tester(const_cast<RecentListModel *>(&model),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QRandomGenerator random(7);
    for (int i = 0; i < 120; ++i) {
        const QString path = OpenStrip::pathOf(QChar(u'A' + random.bounded(26)));
        const int edit = random.bounded(10);
        if (edit < 6)
            strip.recents.record(path, {});
        else if (edit < 9)
            strip.recents.remove(path);
        else if (random.bounded(4) == 0)
            strip.recents.clear();
        else
            strip.recents.undo();
        if (i % 3 == 0)
            strip.clock.advance(30ms);
        QString shown;
        for (int row = 0; row < model.rowCount(); ++row)
            shown += model.index(row).data().toString().front();
        QCOMPARE(shown, strip.listed());
    }
    strip.settle();
    QCOMPARE(strip.chipNames(), strip.listed().left(3));
}

void RecentFilesStripTest::chipsOfferTheirBadgesUnderThePointer()
{
    OpenStrip strip(QStringLiteral("ABCD"));
    RecentChip &chip = *strip.chips()[1];
    auto &play = *chip.findChild<PlayBadge *>();
    auto &forget = *chip.findChild<ForgetBadge *>();
    QVERIFY(play.testAttribute(Qt::WA_TransparentForMouseEvents) && forget.isHidden());
    ControlFixture::enter(chip);
    strip.settle();
    QVERIFY(!play.testAttribute(Qt::WA_TransparentForMouseEvents) && forget.isVisible());
    QCOMPARE(play.geometry(), QRect(9, 5 + 8, 26, 26));
    QCOMPARE(forget.toolTip(), QStringLiteral("Forget this file"));
    chip.click();
    QCOMPARE(strip.opened, QStringList(QStringLiteral("B.wav")));
    play.click();
    QCOMPARE(strip.preview.playingPath(), OpenStrip::pathOf(u'B'));
    forget.click();
    strip.settle();
    QCOMPARE(strip.listed(), QStringLiteral("ACD"));
    QCOMPARE(strip.chipNames(), QStringLiteral("ACD"));
    QCOMPARE(strip.opened.size(), 1);
}

void RecentFilesStripTest::chipsWorkByKeys()
{
    OpenStrip strip(QStringLiteral("ABCD"));
    strip.recents.record(OpenStrip::pathOf(u'C'), {}); // C A B D: not the order of the chips' making
    strip.settle();
    const auto tab = [&] {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        strip.settle();
        return QApplication::focusWidget();
    };
    const QList<RecentChip *> chips = strip.chips();
    QCOMPARE(strip.chipNames(), QStringLiteral("CAB"));
    chips[0]->setFocus(Qt::TabFocusReason);
    strip.settle();
    QTest::keyClick(chips[0], Qt::Key_Return);
    QCOMPARE(strip.opened, QStringList(QStringLiteral("C.wav")));
    QCOMPARE(tab(), chips[0]->findChild<PlayBadge *>());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(strip.preview.playingPath(), OpenStrip::pathOf(u'C'));
    QCOMPARE(tab(), chips[0]->findChild<ForgetBadge *>());
    QCOMPARE(tab(), chips[1]);
    QTest::keyClick(chips[1], Qt::Key_Delete);
    strip.settle();
    QCOMPARE(strip.listed(), QStringLiteral("CBD"));
    QVERIFY(strip.view->isAncestorOf(QApplication::focusWidget()));
}

void RecentFilesStripTest::whatIsGoneIsMissing()
{
    OpenStrip strip(QStringLiteral("AB"));
    strip.files.remove("/a/A.wav");
    const auto isGone = [&] {
        strip.clock.advance(3s);
        return !strip.presence.facts(OpenStrip::pathOf(u'A')).isPresent();
    };
    QTRY_VERIFY(isGone());
    strip.settle();
    RecentChip &chip = *strip.chips()[0];
    QVERIFY(chip.entry().isMissing);
    QCOMPARE(chip.entry().secondText(), QStringLiteral("Missing"));
    ControlFixture::enter(chip);
    strip.settle();
    QVERIFY(chip.findChild<PlayBadge *>()->testAttribute(Qt::WA_TransparentForMouseEvents));
    // It can still be opened, which is how it leaves the list.
    chip.click();
    QCOMPARE(strip.opened, QStringList(QStringLiteral("A.wav")));
}

void RecentFilesStripTest::showsWhatIsPlaying()
{
    OpenStrip strip(QStringLiteral("ABCD"));
    RecentChip &chip = *strip.chips()[1];
    const QImage before = chip.grab().toImage();
    strip.preview.setLength(OpenStrip::pathOf(u'B'), 100);
    strip.preview.toggle(OpenStrip::pathOf(u'B'));
    strip.preview.play(25);
    strip.settle();
    QVERIFY(chip.entry().isPlaying);
    QCOMPARE(chip.entry().progress, 0.25);
    QVERIFY(!chip.findChild<PlayBadge *>()->testAttribute(Qt::WA_TransparentForMouseEvents));
    QVERIFY(chip.grab().toImage() != before);
    QVERIFY(strip.chips()[0]->findChild<PlayBadge *>()->testAttribute(Qt::WA_TransparentForMouseEvents));
    strip.preview.stop();
    strip.settle();
    QCOMPARE(chip.grab().toImage(), before);
}

void RecentFilesStripTest::expandsIntoAList()
{
    OpenStrip strip(QStringLiteral("ABCDEF"));
    strip.press(QStringLiteral("Show all · 6"));
    QVERIFY(strip.view->isExpanded());
    QCOMPARE(strip.title(), QStringLiteral("All recent · 6"));
    QCOMPARE(strip.buttons(), (QStringList{QStringLiteral("Show less"), QStringLiteral("Clear")}));
    QVERIFY(strip.chips().isEmpty());
    QCOMPARE(strip.rows().rowCount(), 6);
    QCOMPARE(strip.rows().rowRect(1), QRectF(0, 30, 560, 30));
    strip.press(QStringLiteral("Show less"));
    QCOMPARE(strip.chipNames(), QStringLiteral("ABC"));
    QVERIFY(!strip.rows().isVisible());
    strip.press(QStringLiteral("3 more · show all"));
    QVERIFY(strip.view->isExpanded());
    strip.press(QStringLiteral("Clear"));
    QVERIFY(strip.recents.items().isEmpty());
}

void RecentFilesStripTest::rowsWorkByPointer()
{
    OpenStrip strip(QStringLiteral("ABCDEF"));
    strip.view->expansionWanted(true);
    strip.settle();
    strip.mouse(QEvent::MouseMove, strip.inRow(1, 21));
    QCOMPARE(strip.rows().viewport()->toolTip(), QStringLiteral("Play"));
    strip.click(strip.inRow(1, 21));
    QCOMPARE(strip.preview.playingPath(), OpenStrip::pathOf(u'B'));
    QCOMPARE(strip.rows().viewport()->toolTip(), QStringLiteral("Stop"));
    strip.click(strip.inRow(2, 300));
    QCOMPARE(strip.opened, QStringList(QStringLiteral("C.wav")));
    QCOMPARE(strip.rows().viewport()->toolTip(), OpenStrip::pathOf(u'C'));
    strip.mouse(QEvent::MouseMove, strip.inRow(2, 545));
    QCOMPARE(strip.rows().viewport()->toolTip(), QStringLiteral("Forget this file"));
    strip.click(strip.inRow(2, 545));
    QCOMPARE(strip.listed(), QStringLiteral("ABDEF"));
    // Pressed on one and released on another is no click.
    strip.mouse(QEvent::MouseButtonPress, strip.inRow(0, 300));
    strip.mouse(QEvent::MouseButtonRelease, strip.inRow(1, 300));
    QCOMPARE(strip.opened.size(), 1);
}

void RecentFilesStripTest::rowsWorkByKeys()
{
    OpenStrip strip(QStringLiteral("ABCDEF"));
    strip.view->expansionWanted(true);
    strip.settle();
    strip.rows().setFocus(Qt::TabFocusReason);
    strip.key(Qt::Key_Down);
    strip.key(Qt::Key_Return);
    QCOMPARE(strip.opened, QStringList(QStringLiteral("B.wav")));
    strip.key(Qt::Key_Space);
    QCOMPARE(strip.preview.playingPath(), OpenStrip::pathOf(u'B'));
    strip.key(Qt::Key_End);
    QVERIFY(strip.rows().viewport()->rect().contains(strip.rows().rowRect(5).toRect()));
    strip.key(Qt::Key_Delete);
    QCOMPARE(strip.listed(), QStringLiteral("ABCDE"));
    // The keyboard goes on from where it was.
    strip.view->expansionWanted(false);
    strip.settle();
    QVERIFY(strip.chips()[0]->hasFocus());
    strip.view->expansionWanted(true);
    strip.settle();
    QVERIFY(strip.rows().hasFocus());
    strip.key(Qt::Key_End);
    strip.key(Qt::Key_Delete);
    QCOMPARE(strip.listed(), QStringLiteral("ABCD"));
    strip.key(Qt::Key_Home);
    strip.key(Qt::Key_Return);
    QCOMPARE(strip.opened.last(), QStringLiteral("A.wav"));
}

void RecentFilesStripTest::asksForPicturesOfWhatIsSeen()
{
    OpenStrip strip(QStringLiteral("ABCDEFGH"), OpenStrip::Kind::Pictures);
    QCOMPARE(strip.source.count(), 3);
    QImage picture(64, 40, QImage::Format_RGB32);
    picture.fill(Qt::red);
    while (strip.source.waiting().size() > 1)
        strip.source.serve(picture);
    strip.source.serve({});
    strip.settle();
    // It fills its square: A could not be made, B could.
    const QPoint inWell(22, 5 + 10);
    QCOMPARE(strip.chips()[1]->grab().toImage().pixelColor(inWell), QColor(Qt::red));
    QVERIFY(strip.chips()[0]->grab().toImage().pixelColor(inWell) != QColor(Qt::red));
    strip.view->expansionWanted(true);
    strip.settle();
    // What is not seen is not asked for, and what could not be made not again.
    QVERIFY(strip.source.count() >= 5 && strip.source.count() <= 6);
}

void RecentFilesStripTest::picturesComeBackIntoSight()
{
    OpenStrip strip(QStringLiteral("ABCDEFGHIJKLMNOPQRST"), OpenStrip::Kind::Pictures);
    QImage picture(64, 40, QImage::Format_RGB32);
    const auto serveAll = [&](const QColor &color) {
        picture.fill(color);
        while (!strip.source.waiting().isEmpty())
            strip.source.serve(picture);
        strip.settle();
    };
    const auto isShown = [&](int row, const QColor &color) {
        const QRect place = strip.rows().rowRect(row).toRect();
        return strip.rows().viewport()->grab(place).toImage().pixelColor(15, 15) == color;
    };
    strip.source.serve({}); // of A none can be made
    serveAll(Qt::red);
    strip.view->expansionWanted(true);
    strip.settle();
    serveAll(Qt::red);
    QVERIFY(isShown(1, Qt::red));
    // More than are kept: those at the top make room for those at the bottom.
    for (int row = 0; row < 20; ++row) {
        strip.rows().scrollTo(strip.rows().model()->index(row, 0));
        strip.settle();
        serveAll(Qt::red);
    }
    QVERIFY(isShown(19, Qt::red));
    QVERIFY(strip.thumbnails.cached(OpenStrip::pathOf(u'B')).isNull());
    strip.rows().scrollTo(strip.rows().model()->index(0, 0));
    strip.settle();
    serveAll(Qt::green);
    QVERIFY(isShown(0, Qt::green));
    QVERIFY(isShown(1, Qt::green));
    // Looked at again, a file may be another one.
    strip.view->expansionWanted(false);
    strip.settle();
    serveAll(Qt::green);
    const int asked = strip.source.count();
    strip.recents.record(OpenStrip::pathOf(u'B'), {});
    strip.settle();
    QCOMPARE(strip.source.count(), asked + 1);
    const auto chip = [&] { return strip.chips()[0]->grab().toImage().pixelColor(22, 15); };
    QCOMPARE(chip(), QColor(Qt::green));
    serveAll(Qt::blue);
    QCOMPARE(chip(), QColor(Qt::blue));
}

void RecentFilesStripTest::speaksToAssistiveTechnology()
{
    OpenStrip strip(QStringLiteral("ABCD"));
    strip.preview.toggle(OpenStrip::pathOf(u'A'));
    QCOMPARE(strip.chips()[0]->accessibleName(), QStringLiteral("A.wav, 03:25 · WAV, playing"));
    QCOMPARE(strip.chips()[1]->accessibleName(), QStringLiteral("B.wav, 03:25 · WAV"));
    QCOMPARE(strip.chips()[1]->accessibleDescription(), OpenStrip::pathOf(u'B'));
    strip.view->expansionWanted(true);
    strip.settle();
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&strip.rows());
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->childCount(), 4);
    QCOMPARE(list->child(0)->text(QAccessible::Name), QStringLiteral("A.wav, 03:25 · WAV, playing"));
}

void RecentFilesStripTest::isIdleAtRest()
{
    OpenStrip strip(QStringLiteral("ABCD"));
    strip.recents.record(OpenStrip::pathOf(u'D'), {});
    strip.recents.remove(OpenStrip::pathOf(u'A'));
    strip.view->expansionWanted(true);
    strip.settle();
    QVERIFY(!strip.frames.isRunning());
    const int fired = strip.clock.firedCount();
    strip.clock.advance(60s);
    QCOMPARE(strip.clock.firedCount(), fired);
}

OSTRELLE_TEST(RecentFilesStripTest)
#include "RecentFilesStripTest.moc"
