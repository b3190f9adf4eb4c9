#include "files/NotchDropDelegate.h"
#include "NotchFixture.h"
#include "notch/ToolRegistry.h"
#include "notch/ToolView.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

using Modules = QList<KestroModule>;

const QPointF kInside{450, 60};

/// A file system of which the test says what is in it and when it answers.
struct FakeFacts
{
    void operator()(const QStringList &paths, const QObject *context,
                    const std::function<void(const QList<FileFacts> &)> &tell)
    {
        asked += paths;
        waiting.append([this, paths, tell, guard = QPointer<const QObject>(context)] {
            if (guard)
                tell(about(paths));
        });
        if (!hangs)
            answer();
    }
    QList<FileFacts> about(const QStringList &paths) const
    {
        QList<FileFacts> facts;
        for (const QString &path : paths)
            facts.append({.kind = folders.contains(path) ? FileFacts::Kind::Folder : FileFacts::Kind::Regular});
        return facts;
    }
    void answer()
    {
        for (const auto &tell : std::exchange(waiting, {}))
            tell();
    }

    QSet<QString> folders{QStringLiteral("/d/sub")};
    bool hangs = false;
    QStringList asked;
    QList<std::function<void()>> waiting;
};

class DropTool : public ToolView
{
public:
    std::optional<double> wantedBodyHeight() const override { return {}; }
    bool acceptsDrop(const QStringList &paths) const override { return !isFull && paths.first().endsWith(u".zip"); }
    void setDropTargeted(bool targeted) override { isTargeted = targeted; }
    bool dropFiles(const QStringList &paths) override
    {
        taken = paths;
        return true;
    }

    bool isFull = false;
    bool isTargeted = false;
    QStringList taken;
};

/// The notch with tools that write down what they are given and what was open by then.
struct DropFixture : NotchFixture
{
    DropFixture()
    {
        const auto tool = [this](KestroModule module, Tool::Delivery delivery) {
            tools.add(module, {.deliver =
                                   [this, module](const QStringList &paths) {
                                       const bool isShown = viewModel.selection() == module;
                                       log.append(QStringLiteral("%1 %2: %3")
                                                      .arg(rawValue(module),
                                                           isShown ? QStringLiteral("shown") : QStringLiteral("hidden"),
                                                           paths.join(u' ')));
                                   },
                               .delivery = delivery});
        };
        for (const auto module : {KestroModule::Assets, KestroModule::Projects, KestroModule::ImageInfo})
            tool(module, Tool::Delivery::BeforeShowing);
        tool(KestroModule::AudioInfo, Tool::Delivery::OnceShown);
        controller.start(panel);
    }
    FakeFileDrags &drags() { return platform.fileDrags(); }
    /// As the zones would stand: beside each other from x 400 on.
    void layOutZones()
    {
        QMap<KestroModule, QRectF> frames;
        for (const KestroModule module : viewModel.dropTargets())
            frames.insert(module, QRectF(400 + 100.0 * static_cast<double>(frames.size()), 40, 90, 70));
        viewModel.setDropZoneFrames(frames);
    }

    ToolRegistry tools;
    FakeFacts facts;
    QStringList log;
    std::unique_ptr<DropTool> openTool;
    NotchDropDelegate delegate{{.drags = drags(),
                                .controller = controller,
                                .settings = settings,
                                .tools = tools,
                                .scheduler = clock,
                                .facts = std::ref(facts),
                                .openTool = [this] { return openTool.get(); }}};
};

QStringList manyFiles(const QString &suffix)
{
    QStringList paths;
    for (int i = 0; i < FileDrags::kFileLimit; ++i)
        paths.append(QStringLiteral("/d/%1.%2").arg(i).arg(suffix));
    return paths;
}

} // namespace

class NotchDropDelegateTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void offersWhatCanTakeTheDrag_data();
    void offersWhatCanTakeTheDrag();
    void deliversToTheZoneOrTheFirst_data();
    void deliversToTheZoneOrTheFirst();
    void zonesOutlastAShortLeave();
    void aDragThatDiesDoesNotSpoilTheNext();
    void theShelfTakesFilesReleasedEarly();
    void servesASourceThatAnswersTwice();
    void doesNotWaitForAHangingFileSystem();
    void goesThroughALongListInPortions();
    void theOpenToolTakesItsOwnDrops();
    void asksTheOpenToolAgainAfterASlowAnswer();
    void onlyWhatIsOverTheSurfaceIsTheOpenTools();
    void followsThePanelInTheMiddleOfADrag();
    void theDropGoesWhereTheDragWouldGoByThen();
};

void NotchDropDelegateTest::offersWhatCanTakeTheDrag_data()
{
    using M = KestroModule;
    QTest::addColumn<QStringList>("paths");
    QTest::addColumn<QList<KestroModule>>("disabled");
    QTest::addColumn<QList<KestroModule>>("expected");
    const QString image = QStringLiteral("/d/a.PNG");
    const QString audio = QStringLiteral("/d/b.flac");
    const QString folder = QStringLiteral("/d/sub");
    const QString text = QStringLiteral("/d/c.txt");
    QTest::newRow("text") << QStringList{text} << Modules{} << Modules{M::Assets};
    QTest::newRow("no suffix") << QStringList{QStringLiteral("/d/png")} << Modules{} << Modules{M::Assets};
    QTest::newRow("image") << QStringList{image} << Modules{} << Modules{M::Assets, M::ImageInfo};
    QTest::newRow("audio") << QStringList{text, audio} << Modules{} << Modules{M::Assets, M::AudioInfo};
    QTest::newRow("audio and image") << QStringList{audio, image} << Modules{}
                                     << Modules{M::Assets, M::ImageInfo, M::AudioInfo};
    QTest::newRow("folder with a slash") << QStringList{QStringLiteral("/d//sub/")} << Modules{}
                                         << Modules{M::Assets, M::Projects};
    QTest::newRow("folder last") << QStringList{image, audio, folder} << Modules{} << Modules{M::Assets, M::Projects};
    QTest::newRow("folder, no shelf") << QStringList{folder} << Modules{M::Assets} << Modules{M::Projects};
    QTest::newRow("folder, no projects") << QStringList{folder, image} << Modules{M::Projects} << Modules{M::Assets};
    QTest::newRow("image, no inspector") << QStringList{image} << Modules{M::ImageInfo} << Modules{M::Assets};
    QTest::newRow("text, no shelf") << QStringList{text} << Modules{M::Assets} << Modules{};
    QTest::newRow("nothing readable") << QStringList{} << Modules{} << Modules{};
}

void NotchDropDelegateTest::offersWhatCanTakeTheDrag()
{
    QFETCH(const QStringList, paths);
    QFETCH(const QList<KestroModule>, disabled);
    QFETCH(const QList<KestroModule>, expected);
    DropFixture notch;
    QSet<KestroModule> enabled = notch.settings.enabledModules();
    enabled.subtract({disabled.begin(), disabled.end()});
    notch.settings.setEnabledModules(enabled);

    notch.drags().enter(kInside, paths);
    QCOMPARE(notch.viewModel.dropTargets(), expected);
    QCOMPARE(notch.drags().isAccepted(), !expected.isEmpty());
    QCOMPARE(notch.viewModel.phase(), expected.isEmpty() ? Phase::Idle : Phase::Expanded);
    if (expected.isEmpty())
        notch.drags().drop();
    QCOMPARE(notch.log, QStringList());
}

void NotchDropDelegateTest::deliversToTheZoneOrTheFirst_data()
{
    QTest::addColumn<QStringList>("paths");
    QTest::addColumn<double>("x");
    QTest::addColumn<QString>("expected");
    const QStringList media{QStringLiteral("/d/2.png"), QStringLiteral("/d/1.mp3"), QStringLiteral("/d/3.png")};
    const QStringList folder{QStringLiteral("/d/sub")};
    const QString all = media.join(u' ');
    QTest::newRow("first zone") << media << 410.0 << QString(QStringLiteral("assets hidden: ") + all);
    QTest::newRow("between zones") << media << 495.0 << QString(QStringLiteral("assets hidden: ") + all);
    QTest::newRow("image") << media << 510.0 << QString(QStringLiteral("imageInfo hidden: ") + all);
    QTest::newRow("audio is shown first") << media << 610.0 << QString(QStringLiteral("audioInfo shown: ") + all);
    QTest::newRow("folder") << folder << 510.0 << QStringLiteral("projects hidden: /d/sub");
}

void NotchDropDelegateTest::deliversToTheZoneOrTheFirst()
{
    QFETCH(const QStringList, paths);
    QFETCH(const double, x);
    QFETCH(const QString, expected);
    DropFixture notch;
    notch.drags().enter(kInside, paths);
    notch.layOutZones();
    notch.drags().moveTo({x, 60});
    notch.drags().drop();
    QCOMPARE(notch.log, QStringList{expected});
    QVERIFY(notch.viewModel.dropTargets().isEmpty());
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
    QCOMPARE(rawValue(notch.viewModel.selection().value()), expected.section(u' ', 0, 0));
    QVERIFY(!notch.viewModel.openedByHover());
    QTRY_VERIFY(notch.platform.panelHost().hasKeyboard());
}

void NotchDropDelegateTest::zonesOutlastAShortLeave()
{
    DropFixture notch;
    const QStringList image{QStringLiteral("/d/a.png")};
    notch.drags().enter(kInside, image);
    const Modules zones = notch.viewModel.dropTargets();
    notch.drags().leave();
    notch.clock.advance(160ms);
    // Its list takes its time at the second visit.
    notch.drags().enter(kInside);
    notch.clock.advance(400ms);
    QCOMPARE(notch.viewModel.dropTargets(), zones);
    notch.drags().know(image);
    QCOMPARE(notch.viewModel.dropTargets(), zones);
    QCOMPARE(notch.ticks(), 1);

    notch.drags().leave();
    notch.clock.advance(171ms);
    QVERIFY(notch.viewModel.dropTargets().isEmpty());
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
}

void NotchDropDelegateTest::aDragThatDiesDoesNotSpoilTheNext()
{
    DropFixture notch;
    notch.platform.dragSense().press();
    notch.viewModel.setDragCatch(true);
    notch.drags().enter(kInside, {QStringLiteral("/d/a.png")});
    // Let go without a word: the watch on the buttons ends it.
    notch.platform.dragSense().release();
    notch.clock.advance(200ms);
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
    QVERIFY(!notch.viewModel.isDragCatchArmed());
    notch.drags().leave();

    notch.drags().enter(kInside, {QStringLiteral("/d/sub")});
    QCOMPARE(notch.viewModel.dropTargets(), (Modules{KestroModule::Assets, KestroModule::Projects}));
    // One that nothing takes, right after it, ends the zones of the other.
    notch.drags().leave();
    notch.drags().enter(kInside, {});
    QVERIFY(notch.viewModel.dropTargets().isEmpty());
    QCOMPARE(notch.viewModel.phase(), Phase::Idle);
}

void NotchDropDelegateTest::theShelfTakesFilesReleasedEarly()
{
    DropFixture notch;
    notch.facts.hangs = true;
    notch.drags().enter(kInside);
    QVERIFY(notch.drags().isAccepted());
    notch.drags().know({QStringLiteral("/d/a.png")});
    QVERIFY(notch.viewModel.dropTargets().isEmpty());
    notch.drags().drop();
    QCOMPARE(notch.log, QStringList{QStringLiteral("assets hidden: /d/a.png")});
    notch.facts.answer();
    QCOMPARE(notch.viewModel.selection(), std::optional(KestroModule::Assets));
    notch.controller.dismiss();

    // Without the shelf nobody knows yet whether they can be taken.
    notch.settings.setEnabledModules({KestroModule::ImageInfo});
    notch.drags().enter(kInside);
    QVERIFY(!notch.drags().isAccepted());
    notch.facts.hangs = false;
    notch.drags().know({QStringLiteral("/d/a.png")});
    QVERIFY(notch.drags().isAccepted());
}

void NotchDropDelegateTest::servesASourceThatAnswersTwice()
{
    DropFixture notch;
    notch.drags().enter(kInside, {});
    QVERIFY(!notch.drags().isAccepted());
    notch.drags().know({QStringLiteral("/d/a.png")});
    QVERIFY(notch.drags().isAccepted());
    QCOMPARE(notch.viewModel.dropTargets(), (Modules{KestroModule::Assets, KestroModule::ImageInfo}));

    // A release that brings no files leaves the panel open and gives nothing to anybody.
    notch.drags().leave();
    notch.drags().enter(kInside);
    notch.drags().drop();
    QCOMPARE(notch.log, QStringList());
}

void NotchDropDelegateTest::doesNotWaitForAHangingFileSystem()
{
    DropFixture notch;
    notch.facts.hangs = true;
    notch.drags().enter(kInside, {QStringLiteral("/d/a.png"), QStringLiteral("/d/sub")});
    notch.clock.advance(99ms);
    QVERIFY(notch.viewModel.dropTargets().isEmpty());
    notch.clock.advance(1ms);
    QCOMPARE(notch.viewModel.dropTargets(), (Modules{KestroModule::Assets, KestroModule::ImageInfo}));
    // What comes later still counts.
    notch.facts.answer();
    QCOMPARE(notch.viewModel.dropTargets(), (Modules{KestroModule::Assets, KestroModule::Projects}));
    notch.clock.advance(1s);
    QCOMPARE(notch.clock.pendingCount(), 0);
}

void NotchDropDelegateTest::goesThroughALongListInPortions()
{
    DropFixture notch;
    QStringList paths = manyFiles(QStringLiteral("png"));
    notch.drags().enter(kInside, paths);
    QCOMPARE(notch.facts.asked.size(), paths.size());
    QCOMPARE(notch.viewModel.dropTargets(), (Modules{KestroModule::Assets, KestroModule::ImageInfo}));
    notch.drags().leave();

    // Only to the first folder, and one portion at a time.
    notch.facts.asked.clear();
    notch.facts.hangs = true;
    paths[60] = QStringLiteral("/d/sub");
    notch.drags().enter(kInside, paths);
    for (int portion = 0; portion < 10; ++portion) {
        QVERIFY(notch.facts.waiting.size() <= 1);
        notch.facts.answer();
    }
    QVERIFY(notch.facts.asked.size() > 60 && notch.facts.asked.size() <= 100);
    QCOMPARE(notch.viewModel.dropTargets(), (Modules{KestroModule::Assets, KestroModule::Projects}));
}

void NotchDropDelegateTest::theOpenToolTakesItsOwnDrops()
{
    DropFixture notch;
    notch.openTool = std::make_unique<DropTool>();
    notch.viewModel.expand(KestroModule::Assets, false);
    notch.drags().enter(kInside);
    QVERIFY(!notch.drags().isAccepted());
    notch.drags().know({QStringLiteral("/d/a.zip")});
    QVERIFY(notch.drags().isAccepted());
    QVERIFY(notch.openTool->isTargeted);
    notch.drags().leave();
    QVERIFY(!notch.openTool->isTargeted);

    notch.drags().enter(kInside, {QStringLiteral("/d/a.zip"), QStringLiteral("/d/b.png")});
    notch.drags().drop();
    QCOMPARE(notch.openTool->taken, (QStringList{QStringLiteral("/d/a.zip"), QStringLiteral("/d/b.png")}));
    QVERIFY(!notch.openTool->isTargeted);

    notch.drags().enter(kInside, {QStringLiteral("/d/a.png")});
    QVERIFY(!notch.drags().isAccepted());
    QVERIFY(!notch.openTool->isTargeted);
    QCOMPARE(notch.viewModel.selection(), std::optional(KestroModule::Assets));
    QVERIFY(notch.viewModel.dropTargets().isEmpty());
    QCOMPARE(notch.log, QStringList());
}

void NotchDropDelegateTest::asksTheOpenToolAgainAfterASlowAnswer()
{
    // It may change its mind when it turns out what they are, also long after it was first asked.
    for (const auto delay : {0ms, 99ms, 101ms, 900ms}) {
        DropFixture notch;
        notch.openTool = std::make_unique<DropTool>();
        notch.viewModel.expand(KestroModule::Assets, false);
        notch.facts.hangs = true;
        notch.drags().enter(kInside, {QStringLiteral("/d/a.zip")});
        notch.clock.advance(delay);
        QVERIFY(notch.drags().isAccepted());
        notch.openTool->isFull = true;
        notch.facts.answer();
        QVERIFY2(!notch.drags().isAccepted(), qPrintable(QString::number(delay.count())));
        QVERIFY(!notch.openTool->isTargeted);
    }
}

void NotchDropDelegateTest::onlyWhatIsOverTheSurfaceIsTheOpenTools()
{
    DropFixture notch;
    notch.openTool = std::make_unique<DropTool>();
    notch.platform.dragSense().press();
    notch.viewModel.setDragCatch(true);
    notch.viewModel.expand(KestroModule::Assets, false);
    // 588 wide and 192 high, in the middle of 900; the panel hears of drags down to 380.
    const double left = (notch.panel.width() - 588) / 2.0;
    const QStringList files{QStringLiteral("/d/a.zip")};
    notch.drags().enter({450, 300}, files);
    QVERIFY(!notch.drags().isAccepted());
    const std::pair<QPointF, bool> places[] = {{{450, 190}, true},        {{450, 194}, false},
                                               {{left + 2, 100}, true},   {{left - 2, 100}, false},
                                               {{left + 586, 100}, true}, {{left + 590, 100}, false}};
    for (const auto &[place, isOver] : places) {
        notch.drags().moveTo(place);
        QCOMPARE(notch.drags().isAccepted(), isOver);
        QCOMPARE(notch.openTool->isTargeted, isOver);
        QVERIFY(notch.viewModel.dropTargets().isEmpty());
    }
    // Where it takes nothing it is given nothing.
    notch.drags().drop();
    QVERIFY(notch.openTool->taken.isEmpty());
    QCOMPARE(notch.log, QStringList());
}

void NotchDropDelegateTest::followsThePanelInTheMiddleOfADrag()
{
    DropFixture notch;
    notch.openTool = std::make_unique<DropTool>();
    notch.viewModel.expand(KestroModule::Assets, false);
    notch.drags().enter(kInside, {QStringLiteral("/d/a.zip")});
    // Another window closes the panel: then it is the notch's.
    notch.viewModel.collapse();
    notch.drags().moveTo(kInside);
    QVERIFY(!notch.openTool->isTargeted);
    QCOMPARE(notch.viewModel.dropTargets(), Modules{KestroModule::Assets});
    // A shortcut opens it again, and the tool goes with its view.
    notch.viewModel.expand(KestroModule::Assets, false);
    notch.drags().moveTo(kInside);
    QVERIFY(notch.openTool->isTargeted);
    notch.openTool.reset();
    notch.drags().moveTo(kInside);
    QVERIFY(!notch.drags().isAccepted());
    notch.drags().leave();
    QCOMPARE(notch.viewModel.phase(), Phase::Expanded);
}

void NotchDropDelegateTest::theDropGoesWhereTheDragWouldGoByThen()
{
    const QStringList files{QStringLiteral("/d/a.zip")};
    DropFixture notch;
    notch.openTool = std::make_unique<DropTool>();
    notch.viewModel.expand(KestroModule::Assets, false);
    notch.drags().enter(kInside, files);
    QVERIFY(notch.drags().isAccepted());
    // Closed since the last movement: the view may be gone, the files are not.
    notch.viewModel.collapse();
    notch.openTool.reset();
    notch.drags().drop();
    QCOMPARE(notch.log, QStringList{QStringLiteral("assets hidden: /d/a.zip")});
    notch.controller.dismiss();

    // Opened since then.
    notch.drags().enter(kInside, files);
    notch.openTool = std::make_unique<DropTool>();
    notch.viewModel.expand(KestroModule::Assets, false);
    notch.drags().drop();
    QCOMPARE(notch.openTool->taken, files);
    QCOMPARE(notch.log.size(), 1);
}

OSTRELLE_TEST(NotchDropDelegateTest)
#include "NotchDropDelegateTest.moc"
