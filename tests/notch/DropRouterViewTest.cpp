#include "notch/DropRouterView.h"
#include "PanelFixture.h"
#include "notch/DropZone.h"
#include "notch/ModuleStrip.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

const QList<KestroModule> kTargets{KestroModule::Assets, KestroModule::ImageInfo, KestroModule::AudioInfo};

struct RouterFixture : PanelFixture
{
    RouterFixture()
    {
        Tool assets = *registry.find(KestroModule::Assets);
        assets.dropAction = QStringLiteral("Stage on the shelf");
        registry.add(KestroModule::Assets, assets);
        start();
    }
    /// A drag has begun elsewhere.
    void arm()
    {
        platform.dragSense().press();
        viewModel.setDragCatch(true);
    }
    QImage picture() { return notch.grab().toImage(); }
    QImage pictureWithoutZones()
    {
        auto &router = child<DropRouterView>();
        router.hide();
        const QImage picture = notch.grab().toImage();
        router.show();
        return picture;
    }
    QPainterPath outline() const { return surfaceOutline({notch.width() / 2.0, 0}, notch.surfaceState()); }
};

/// By WCAG 2.1, "contrast ratio".
double contrast(QRgb one, QRgb other)
{
    const auto luminance = [](QRgb colour) {
        const auto linear = [](int channel) {
            const double value = channel / 255.0;
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
    };
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// The most that the zones make of any pixel, compared to what is there without them.
double zoneContrast(RouterFixture &fixture)
{
    const QImage with = fixture.picture();
    const QImage without = fixture.pictureWithoutZones();
    double most = 1;
    for (int y = 0; y < with.height(); ++y) {
        for (int x = 0; x < with.width(); ++x) {
            if (with.pixel(x, y) != without.pixel(x, y))
                most = std::max(most, contrast(with.pixel(x, y), without.pixel(x, y)));
        }
    }
    return most;
}

/// One zone on a ground of the opposite tone, at (20, 20).
struct ZoneStage : ControlFixture
{
    explicit ZoneStage(AppearancePreference preference)
    {
        settings.setAppearance(preference);
        zone.setFrameCorner({20, 20});
    }
    QImage picture(int ratio = 1)
    {
        QImage image(QSize(192, 116) * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(appearance.scheme() == ColorScheme::Dark ? Qt::black : Qt::white);
        zone.render(&image, zone.pos(), {}, {});
        return image;
    }
    void hover(bool on)
    {
        zone.setHovered(on);
        settle();
    }

    DropZone zone{context, KestroModule::ImageInfo, QStringLiteral("Read its metadata"), nullptr};
};

bool isNear(QRgb colour, int red, int green, int blue)
{
    constexpr int kTolerance = 3;
    return std::abs(qRed(colour) - red) <= kTolerance && std::abs(qGreen(colour) - green) <= kTolerance &&
           std::abs(qBlue(colour) - blue) <= kTolerance;
}

} // namespace

class DropRouterViewTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void reportsItsZonesAtOnceWhereTheyStand();
    void saysWhatTheZonesDo();
    void paintsAZone_data();
    void paintsAZone();
    void isCrispAtScaleTwo();
    void growsUnderTheDragUnlessMotionIsReduced();
    void showsItsZonesAtOnce_data();
    void showsItsZonesAtOnce();
    void staysInsideTheSurface_data();
    void staysInsideTheSurface();
    void takesThePlaceOfTheTilesAndLeavesNoTrace();
    void noKeyChoosesAToolUnderTheZones();
};

void DropRouterViewTest::reportsItsZonesAtOnceWhereTheyStand()
{
    RouterFixture fixture;
    fixture.viewModel.beginRouting(kTargets);
    // 504 wide, hanging from the middle of the panel below the bar of 24.
    const double left = fixture.notch.width() / 2.0 - 252 + 14;
    QMap<KestroModule, QRectF> expected;
    for (int i = 0; i < 3; ++i)
        expected.insert(kTargets.at(i), QRectF(left + i * 162, 24 + 14, 152, 76));
    QCOMPARE(fixture.viewModel.dropZoneFrames(), expected);
    fixture.settle();
    QCOMPARE(fixture.viewModel.dropZoneFrames(), expected);
    for (const DropZone *zone : fixture.notch.findChildren<DropZone *>()) {
        QVERIFY(zone->isVisible());
        const QPoint corner = zone->mapTo(&fixture.notch, QPoint()) + zone->frame().topLeft() - zone->pos();
        QCOMPARE(QPointF(corner), expected.value(zone->module()).topLeft());
    }

    // Another panel size moves them; after the end they are reported no more.
    fixture.notch.resize(fixture.notch.width() - 100, fixture.notch.height());
    QCOMPARE(fixture.viewModel.dropZoneFrames().value(KestroModule::Assets).x(), left - 50);
    fixture.viewModel.endRouting(false);
    fixture.settle();
    QVERIFY(fixture.viewModel.dropZoneFrames().isEmpty());
}

void DropRouterViewTest::saysWhatTheZonesDo()
{
    RouterFixture fixture;
    fixture.viewModel.beginRouting(kTargets);
    fixture.settle();
    auto &router = fixture.child<DropRouterView>();
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&router);
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->childCount(), 3);
    QCOMPARE(list->child(0)->role(), QAccessible::ListItem);
    QCOMPARE(list->child(0)->text(QAccessible::Name), QStringLiteral("Assets"));
    QCOMPARE(list->child(0)->text(QAccessible::Description), QStringLiteral("Stage on the shelf"));
}

void DropRouterViewTest::paintsAZone_data()
{
    QTest::addColumn<AppearancePreference>("appearance");
    QTest::addColumn<QColor>("resting");
    QTest::addColumn<QColor>("dash");
    QTest::addColumn<QColor>("hovered");
    QTest::addColumn<QColor>("edge");
    // The fills over black or white: 0.065 and 0.045 of the tint times 0.6, 0.1 of the accent; edges over them.
    QTest::newRow("dark") << AppearancePreference::Dark << QColor(10, 9, 10) << QColor(37, 36, 37) << QColor(23, 6, 17)
                          << QColor(166, 45, 124);
    QTest::newRow("light") << AppearancePreference::Light << QColor(249, 248, 249) << QColor(228, 227, 228)
                           << QColor(252, 236, 246) << QColor(235, 114, 193);
}

void DropRouterViewTest::paintsAZone()
{
    QFETCH(const AppearancePreference, appearance);
    QFETCH(const QColor, resting);
    QFETCH(const QColor, dash);
    QFETCH(const QColor, hovered);
    QFETCH(const QColor, edge);
    ZoneStage stage(appearance);
    const auto looksLike = [](QRgb pixel, const QColor &colour) {
        return isNear(pixel, colour.red(), colour.green(), colour.blue());
    };

    const QImage atRest = stage.picture();
    const QPoint onGround(30, 58);
    QVERIFY(looksLike(atRest.pixel(onGround), resting));
    QCOMPARE(atRest.pixel(19, 58), atRest.pixel(0, 0));
    // Four on, four off along the upper edge.
    int dashes = 0;
    int gaps = 0;
    for (int x = 40; x < 152; ++x) {
        dashes += looksLike(atRest.pixel(x, 20), dash) ? 1 : 0;
        gaps += looksLike(atRest.pixel(x, 20), resting) ? 1 : 0;
    }
    QVERIFY2(std::abs(dashes - 56) <= 28 && std::abs(gaps - dashes) <= 8, qPrintable(QString::number(dashes)));

    stage.hover(true);
    const QImage under = stage.picture();
    QVERIFY(looksLike(under.pixel(onGround), hovered));
    // The grown zone ends 1.14 above the resting one; its edge covers the row of y 19 whole.
    for (int x = 40; x < 152; ++x)
        QVERIFY(looksLike(under.pixel(x, 19), edge));
    stage.hover(false);
    QCOMPARE(stage.picture(), atRest);
}

void DropRouterViewTest::isCrispAtScaleTwo()
{
    ZoneStage stage(AppearancePreference::Dark);
    const QImage image = stage.picture(2);
    QCOMPARE(image.pixel(160, 39), qRgb(0, 0, 0));
    int dashes = 0;
    for (int x = 80; x < 304; ++x) {
        QCOMPARE(image.pixel(x, 40), image.pixel(x, 41));
        dashes += qRed(image.pixel(x, 40)) > 30 ? 1 : 0;
    }
    QVERIFY(dashes > 90 && dashes < 130);
    QVERIFY(isNear(image.pixel(160, 42), 10, 9, 10));
}

void DropRouterViewTest::growsUnderTheDragUnlessMotionIsReduced()
{
    for (const bool reduced : {false, true}) {
        ZoneStage stage(AppearancePreference::Dark);
        stage.platform.appearance().setPrefersReducedMotion(reduced);
        const QRect frame = stage.zone.frame();
        stage.zone.setHovered(true);
        stage.clock.advance(60ms);
        const int between = qRed(stage.picture().pixel(30, 58));
        QVERIFY2(between > 11 && between < 22, qPrintable(QString::number(between)));
        stage.settle();
        QCOMPARE(stage.picture().pixel(100, 18) != qRgb(0, 0, 0), !reduced);
        QCOMPARE(stage.zone.frame(), frame);
        QVERIFY(!stage.frames.isRunning());
    }
}

void DropRouterViewTest::showsItsZonesAtOnce_data()
{
    QTest::addColumn<AppearancePreference>("appearance");
    QTest::addColumn<bool>("fromSelector");
    QTest::newRow("dark, from the closed notch") << AppearancePreference::Dark << false;
    QTest::newRow("light, from the closed notch") << AppearancePreference::Light << false;
    QTest::newRow("dark, from the selector") << AppearancePreference::Dark << true;
    QTest::newRow("light, from the selector") << AppearancePreference::Light << true;
}

void DropRouterViewTest::showsItsZonesAtOnce()
{
    QFETCH(const AppearancePreference, appearance);
    QFETCH(const bool, fromSelector);
    RouterFixture fixture;
    fixture.settings.setAppearance(appearance);
    fixture.arm();
    if (fromSelector)
        fixture.open();
    fixture.settle();
    fixture.viewModel.beginRouting(kTargets);
    fixture.clock.advance(34ms);
    const double seen = zoneContrast(fixture);
    QVERIFY2(seen > 2, qPrintable(QString::number(seen)));
    // And from then on, however the glass below them changes.
    for (int frame = 0; frame < 30; ++frame) {
        fixture.clock.advance(17ms);
        const double stillSeen = zoneContrast(fixture);
        QVERIFY2(stillSeen > 2, qPrintable(QStringLiteral("%1 in frame %2").arg(stillSeen).arg(frame)));
    }
}

void DropRouterViewTest::staysInsideTheSurface_data()
{
    QTest::addColumn<bool>("isArmed");
    QTest::newRow("armed") << true;
    QTest::newRow("not armed") << false;
}

void DropRouterViewTest::staysInsideTheSurface()
{
    QFETCH(const bool, isArmed);
    RouterFixture fixture;
    if (isArmed)
        fixture.arm();
    fixture.settle();
    QCOMPARE(fixture.notch.surfaceState().size.height(), isArmed ? 38 : 24);
    fixture.viewModel.beginRouting(kTargets);
    int painted = 0;
    for (int frame = 0; frame < 20; ++frame) {
        fixture.clock.advance(frame % 2 == 0 ? 17ms : 34ms);
        if (frame == 9)
            fixture.viewModel.endRouting(false);
        if (fixture.notch.findChild<DropRouterView *>()->isHidden())
            continue;
        const QImage with = fixture.picture();
        const QImage without = fixture.pictureWithoutZones();
        // With a margin: a pixel that the outline only crosses may be painted.
        QImage inside(with.size(), QImage::Format_RGB32);
        inside.fill(Qt::black);
        QPainter painter(&inside);
        painter.setPen(QPen(Qt::white, 2));
        painter.setBrush(Qt::white);
        painter.drawPath(fixture.outline());
        painter.end();
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x) {
                if (with.pixel(x, y) == without.pixel(x, y))
                    continue;
                ++painted;
                QVERIFY2(inside.pixel(x, y) == qRgb(255, 255, 255),
                         qPrintable(QStringLiteral("%1, %2 in frame %3").arg(x).arg(y).arg(frame)));
            }
        }
    }
    QVERIFY(painted > 0);
}

void DropRouterViewTest::takesThePlaceOfTheTilesAndLeavesNoTrace()
{
    RouterFixture fixture;
    RouterFixture fresh;
    fixture.viewModel.beginRouting(kTargets);
    fixture.clock.advance(40ms);
    fixture.settle();
    QVERIFY(fixture.notch.findChild<ModuleStrip *>()->isHidden());
    QVERIFY(!fixture.frames.isRunning());
    QCOMPARE(fixture.notch.surfaceState().size, QSizeF(504, 104 + 24 + 18));

    // Closing fades the zones that are there and brings the marks back.
    fixture.viewModel.endRouting(false);
    fixture.clock.advance(50ms);
    QVERIFY(fixture.child<DropRouterView>().isVisible());
    fixture.settle();
    QVERIFY(fixture.notch.findChild<DropRouterView *>()->isHidden());
    QCOMPARE(fixture.picture(), fresh.picture());

    // A drop that leads nowhere shows the selector, which has the keys then.
    fixture.viewModel.beginRouting(kTargets);
    fixture.settle();
    fixture.viewModel.endRouting(true);
    fixture.settle();
    fresh.viewModel.expand(std::nullopt, false);
    fresh.settle();
    QCOMPARE(fixture.picture(), fresh.picture());
    QCOMPARE(fixture.notch.focusWidget(), fixture.notch.findChild<ModuleStrip *>());

    // And a delivery its tool.
    fixture.viewModel.beginRouting({KestroModule::Assets});
    fixture.settle();
    fixture.viewModel.endRouting(true);
    fixture.viewModel.expand(KestroModule::Assets, false);
    fresh.viewModel.expand(KestroModule::Assets, false);
    fixture.settle();
    fresh.settle();
    QCOMPARE(fixture.picture(), fresh.picture());
}

void DropRouterViewTest::noKeyChoosesAToolUnderTheZones()
{
    RouterFixture fixture;
    fixture.viewModel.beginRouting(kTargets);
    fixture.settle();
    fixture.pressKey(Qt::Key_1);
    QCOMPARE(fixture.viewModel.selection(), std::nullopt);
    fixture.pressKey(Qt::Key_Escape);
    QCOMPARE(fixture.viewModel.phase(), Phase::Idle);
    QVERIFY(fixture.viewModel.dropTargets().isEmpty());
}

OSTRELLE_TEST(DropRouterViewTest)
#include "DropRouterViewTest.moc"
