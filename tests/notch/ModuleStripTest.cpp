#include "notch/ModuleStrip.h"
#include "PanelFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>

using namespace ostrelle;

namespace {

struct StripFixture : ControlFixture
{
    QWidget ground;
    ToolRegistry registry;
    ModuleStrip strip{context, registry, &ground};

    explicit StripFixture(const QList<KestroModule> &modules)
    {
        ground.resize(600, 160);
        strip.setModules(modules);
        show(0);
        ground.show();
    }
    void show(double openness, double toolness = 0)
    {
        strip.setLook({.centre = {300, 80},
                       .openness = openness,
                       .content = openness,
                       .toolness = toolness,
                       .peekOpacity = 0.42});
    }
    double centreOf(std::size_t index)
    {
        const ModuleTile &tile = *strip.tiles().at(index);
        return QRectF(tile.geometry()).translated(strip.pos()).center().x();
    }
};

const QList<KestroModule> kThree = {KestroModule::Color, KestroModule::Clipboard, KestroModule::AudioInfo};

} // namespace

class ModuleStripTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void marksTravelToTheirTiles();
    void marksTakeNoPartInPointerAndKeyboard();
    void aMarkThatLeavesAPointerIsNoTileBelowIt();
    void choosingTheCurrentToolAgainDoesNothing();
    void arrowsStayWithinTheRow();
    void badgeFollowsTheTool();
    void plateSlidesToTheNewTool();
};

void ModuleStripTest::marksTravelToTheirTiles()
{
    StripFixture fixture({kAllModules.begin(), kAllModules.end()});
    for (const double openness : {0.0, 0.25, 0.5, 1.0}) {
        fixture.show(openness);
        const double pitch = 28 + 60 * openness;
        for (std::size_t i = 0; i < 6; ++i) {
            const double expected = 300 + (static_cast<double>(i) - 2.5) * pitch;
            QVERIFY2(qAbs(fixture.centreOf(i) - expected) <= 0.5, qPrintable(QString::number(openness)));
        }
    }
}

void ModuleStripTest::marksTakeNoPartInPointerAndKeyboard()
{
    StripFixture fixture(kThree);
    ModuleTile &tile = *fixture.strip.tiles().front();
    QSignalSpy selected(&fixture.strip, &ModuleStrip::selected);
    QCOMPARE(tile.toolTip(), title(KestroModule::Color));
    QCOMPARE(tile.focusPolicy(), Qt::NoFocus);
    const QImage before = fixture.ground.grab().toImage();
    ControlFixture::enter(tile);
    fixture.settle();
    QTest::mouseClick(&tile, Qt::LeftButton);
    QCOMPARE(selected.count(), 0);
    QCOMPARE(fixture.ground.grab().toImage(), before);

    fixture.show(1);
    QCOMPARE(tile.toolTip(), blurb(KestroModule::Color));
    QTest::mouseClick(&tile, Qt::LeftButton);
    QCOMPARE(selected.count(), 1);
}

void ModuleStripTest::aMarkThatLeavesAPointerIsNoTileBelowIt()
{
    StripFixture fixture(kThree);
    fixture.show(1);
    const QImage untouched = fixture.ground.grab().toImage();
    fixture.show(0);
    ModuleTile &tile = *fixture.strip.tiles().front();
    tile.setAttribute(Qt::WA_UnderMouse); // as the toolkit does
    StripFixture::enter(tile);
    for (const double openness : {0.4, 0.6, 1.0})
        fixture.show(openness);
    fixture.settle();
    QCOMPARE(fixture.ground.grab().toImage(), untouched);
    QTest::mouseMove(&tile, QPoint(10, 10));
    fixture.settle();
    QVERIFY(fixture.ground.grab().toImage() != untouched);
}

void ModuleStripTest::choosingTheCurrentToolAgainDoesNothing()
{
    StripFixture fixture(kThree);
    fixture.show(1, 1);
    fixture.strip.setActive(KestroModule::Clipboard);
    QSignalSpy selected(&fixture.strip, &ModuleStrip::selected);
    fixture.strip.tiles().at(1)->click();
    QCOMPARE(selected.count(), 0);
    fixture.strip.tiles().at(2)->click();
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.front().front().value<KestroModule>(), KestroModule::AudioInfo);
}

void ModuleStripTest::arrowsStayWithinTheRow()
{
    StripFixture fixture(kThree);
    fixture.show(1);
    QVERIFY(QTest::qWaitForWindowActive(&fixture.ground));
    const auto &tiles = fixture.strip.tiles();
    fixture.strip.setFocus();
    QTest::keyClick(&fixture.strip, Qt::Key_Right);
    QVERIFY(tiles.at(0)->hasFocus());
    QTest::keyClick(tiles.at(0), Qt::Key_Left);
    QVERIFY(tiles.at(0)->hasFocus());
    for (std::size_t i = 0; i < 3; ++i)
        QTest::keyClick(tiles.at(std::min<std::size_t>(i, 2)), Qt::Key_Right);
    QVERIFY(tiles.at(2)->hasFocus());
}

void ModuleStripTest::badgeFollowsTheTool()
{
    StripFixture fixture(kThree);
    std::optional<ModuleBadge> badge;
    Tool tool;
    tool.badge = [&badge] { return badge; };
    fixture.registry.add(KestroModule::Color, tool);
    fixture.show(1);
    const QImage without = fixture.ground.grab().toImage();
    badge = DotBadge{.red = 1, .green = 0, .blue = 0};
    fixture.registry.notifyBadgeChanged(KestroModule::Color);
    const QImage with = fixture.ground.grab().toImage();
    const ModuleTile &tile = *fixture.strip.tiles().front();
    const QPoint dot = tile.mapTo(&fixture.ground, QPoint(tile.width() / 2 + 16, 13));
    QCOMPARE(with.pixelColor(dot), QColor(Qt::red));
    badge.reset();
    fixture.registry.notifyBadgeChanged(KestroModule::Color);
    QCOMPARE(fixture.ground.grab().toImage(), without);
}

void ModuleStripTest::plateSlidesToTheNewTool()
{
    StripFixture fixture(kThree);
    fixture.show(1, 1);
    fixture.strip.setActive(KestroModule::Color);
    const QImage first = fixture.ground.grab().toImage();
    fixture.strip.setActive(KestroModule::AudioInfo);
    QVERIFY(fixture.frames.isRunning());
    fixture.settle();
    QVERIFY(!fixture.frames.isRunning());
    // Where it rests it looks as if it had always been there.
    StripFixture other(kThree);
    other.show(1, 1);
    other.strip.setActive(KestroModule::AudioInfo);
    other.settle();
    QCOMPARE(fixture.ground.grab().toImage(), other.ground.grab().toImage());
    QVERIFY(fixture.ground.grab().toImage() != first);
}

OSTRELLE_TEST(ModuleStripTest)
#include "ModuleStripTest.moc"
