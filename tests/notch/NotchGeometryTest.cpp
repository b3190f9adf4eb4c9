#include "notch/NotchGeometry.h"
#include "platform/Screens.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <algorithm>

using namespace ostrelle;

namespace {

NotchMetrics plainMetrics(double barHeight = 24)
{
    return {.menuBarHeight = barHeight};
}

NotchMetrics notchedMetrics(const QSizeF &notch)
{
    return {.hasHardwareNotch = true, .hardwareNotchSize = notch, .menuBarHeight = notch.height()};
}

/// Every combination of what the geometry depends on, with three kinds of screen.
QList<GeometryInput> everyInput()
{
    const QList<NotchMetrics> screens = {plainMetrics(), plainMetrics(40), notchedMetrics({185, 38})};
    const QList<std::optional<double>> heights = {std::nullopt, -5.0, 100.0, 300.0, 5000.0};
    QList<std::optional<KestroModule>> selections = {std::nullopt};
    std::copy(kAllModules.begin(), kAllModules.end(), std::back_inserter(selections));
    QList<GeometryInput> inputs;
    for (const Phase phase : {Phase::Idle, Phase::Hover, Phase::Expanded})
        for (const NotchMetrics &metrics : screens)
            for (const bool isShown : {false, true})
                for (int modules = 0; modules <= 6; ++modules)
                    for (const bool isArmed : {false, true})
                        for (int targets = 0; targets <= 3; ++targets)
                            for (const auto &selection : selections)
                                for (const auto &height : heights)
                                    inputs.append(
                                        {phase, metrics, isShown, modules, isArmed, targets, selection, height});
    return inputs;
}

bool holds(const QSizeF &outer, const QSizeF &inner)
{
    return outer.width() >= inner.width() && outer.height() >= inner.height();
}

} // namespace

class NotchGeometryTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void measuresTheTopOfAScreen_data();
    void measuresTheTopOfAScreen();
    void givesEachStateItsSizes_data();
    void givesEachStateItsSizes();
    void limitsTheBodyPerTool();
    void nestsContentInInteractionInWindow();
    void insetsContentOnlyBelowSomething();
};

void NotchGeometryTest::measuresTheTopOfAScreen_data()
{
    QTest::addColumn<double>("topBar");
    QTest::addColumn<QSizeF>("declared");
    QTest::addColumn<NotchMetrics>("expected");

    QTest::newRow("no bar") << 0.0 << QSizeF() << plainMetrics();
    QTest::newRow("thin bar") << 10.0 << QSizeF() << plainMetrics();
    QTest::newRow("thick bar") << 32.0 << QSizeF() << plainMetrics(32);
    QTest::newRow("notch") << 0.0 << QSizeF(185, 38) << notchedMetrics({185, 38});
    QTest::newRow("narrow notch") << 0.0 << QSizeF(90, 30) << notchedMetrics({140, 30});
    QTest::newRow("bar taller than the notch") << 44.0 << QSizeF(200, 30) << NotchMetrics{true, QSizeF(200, 30), 44};
    QTest::newRow("flat notch, bar at least 24") << 0.0 << QSizeF(200, 12) << NotchMetrics{true, QSizeF(200, 12), 24};
    QTest::newRow("notch without height") << 0.0 << QSizeF(200, 0) << plainMetrics();
    QTest::newRow("notch larger than the screen") << 0.0 << QSizeF(5000, 5000) << notchedMetrics({1920, 1080});
}

void NotchGeometryTest::measuresTheTopOfAScreen()
{
    QFETCH(const double, topBar);
    QFETCH(const QSizeF, declared);
    Screen screen{.name = QStringLiteral("eDP-1"), .frame = QRectF(0, 0, 1920, 1080), .topBarHeight = topBar};
    QMap<QString, QSizeF> notches{{QStringLiteral("other"), QSizeF(300, 60)}};
    if (declared.isValid())
        notches.insert(screen.name, declared);
    QTEST(NotchMetrics::measure(screen, notches), "expected");
}

void NotchGeometryTest::givesEachStateItsSizes_data()
{
    QTest::addColumn<GeometryInput>("input");
    QTest::addColumn<QSizeF>("content");
    QTest::addColumn<QSizeF>("interaction");
    QTest::addColumn<QSizeF>("window");

    const NotchMetrics notch = notchedMetrics({185, 38});
    const auto row = [](const char *name, const GeometryInput &input, const QSizeF &content, const QSizeF &interaction,
                        const QSizeF &window) { QTest::newRow(name) << input << content << interaction << window; };

    row("idle", {}, {192, 24}, {206, 29}, {298, 75});
    row("idle without tools", {.activeModuleCount = 0}, {52, 24}, {66, 29}, {158, 75});
    row("idle, hidden", {.showAutomatically = false}, {0, 0}, {0, 0}, {92, 46});
    row("idle, armed", {.isDragCatchArmed = true}, {236, 38}, {236, 38}, {680, 380});
    row("idle, hidden, armed", {.showAutomatically = false, .isDragCatchArmed = true}, {0, 0}, {0, 0}, {680, 380});
    row("idle on a notch", {.metrics = notch}, {192, 59}, {206, 64}, {298, 110});
    row("few tools on a notch", {.metrics = notch, .activeModuleCount = 3}, {185, 59}, {199, 64}, {291, 110});
    row("hover", {.phase = Phase::Hover}, {206, 29}, {206, 29}, {298, 75});
    row("hover, hidden", {.phase = Phase::Hover, .showAutomatically = false}, {206, 29}, {206, 29}, {298, 75});
    row("selector", {.phase = Phase::Expanded}, {588, 154}, {588, 154}, {680, 200});
    row("selector on a notch", {.phase = Phase::Expanded, .metrics = notch}, {588, 168}, {588, 168}, {680, 214});
    row("tool before it asks", {.phase = Phase::Expanded, .selection = KestroModule::Color}, {588, 192}, {588, 192},
        {680, 238});
    row("tool", {.phase = Phase::Expanded, .selection = KestroModule::Color, .requestedContentHeight = 300}, {588, 342},
        {588, 342}, {680, 388});
    row("one zone", {.phase = Phase::Expanded, .dropTargetCount = 1}, {180, 146}, {180, 146}, {680, 380});
    row("three zones over a tool", {.phase = Phase::Expanded, .dropTargetCount = 3, .selection = KestroModule::Assets},
        {504, 146}, {504, 146}, {680, 380});
    row("six zones", {.phase = Phase::Expanded, .dropTargetCount = 6}, {990, 146}, {990, 146}, {900, 380});
}

void NotchGeometryTest::givesEachStateItsSizes()
{
    QFETCH(const GeometryInput, input);
    const NotchGeometry geometry = NotchGeometry::compute(input);
    QTEST(geometry.contentSize, "content");
    QTEST(geometry.interactionSize, "interaction");
    QTEST(geometry.windowSize, "window");
}

void NotchGeometryTest::limitsTheBodyPerTool()
{
    const QList<double> maxima = {402, 426, 374, 374, 462, 490};
    for (std::size_t i = 0; i < kAllModules.size(); ++i) {
        GeometryInput input{.phase = Phase::Expanded, .selection = kAllModules[i]};
        const auto bodyFor = [&input](double requested) {
            input.requestedContentHeight = requested;
            return NotchGeometry::compute(input).contentSize.height() - 24 - kSeamStripHeight;
        };
        QCOMPARE(bodyFor(100), 150.0);
        QCOMPARE(bodyFor(200.5), 200.5);
        QCOMPARE(bodyFor(1000), maxima.at(static_cast<qsizetype>(i)));
    }
}

void NotchGeometryTest::nestsContentInInteractionInWindow()
{
    for (const GeometryInput &input : everyInput()) {
        const NotchGeometry geometry = NotchGeometry::compute(input);
        QVERIFY(holds(geometry.interactionSize, geometry.contentSize));
        QVERIFY(holds(geometry.catchArea, geometry.interactionSize));
        QVERIFY(holds(geometry.windowSize, geometry.interactionSize));
        QVERIFY(holds({900, 700}, geometry.windowSize));
        QVERIFY(holds(geometry.contentSize, {0, 0}));
        if (input.isDragCatchArmed)
            QVERIFY(holds(geometry.catchArea, {560, 380}) && holds(geometry.windowSize, geometry.catchArea));
        else
            QCOMPARE(geometry.catchArea, geometry.interactionSize);
        // Only a notch that is hidden while closed takes no pointer.
        const bool isHidden = input.phase == Phase::Idle && !input.showAutomatically;
        QCOMPARE(geometry.interactionSize.isEmpty(), isHidden);
        // A resting pointer does not leave the surface by making it grow.
        if (input.phase == Phase::Idle && !isHidden) {
            GeometryInput hovered = input;
            hovered.phase = Phase::Hover;
            QVERIFY(holds(geometry.interactionSize, NotchGeometry::compute(hovered).contentSize));
        }
    }
}

void NotchGeometryTest::insetsContentOnlyBelowSomething()
{
    for (const GeometryInput &input : everyInput()) {
        const bool isBelow = input.metrics.hasHardwareNotch || input.phase == Phase::Expanded;
        QCOMPARE(NotchGeometry::compute(input).contentTopInset, isBelow ? input.metrics.topInset() : 0.0);
    }
}

OSTRELLE_TEST(NotchGeometryTest)
#include "NotchGeometryTest.moc"
