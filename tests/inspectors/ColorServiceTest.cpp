#include "inspectors/ColorService.h"
#include "FilesFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace ostrelle;
using namespace std::chrono_literals;

class ColorServiceTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void recordsWhatWasPicked();
    void recordsAllThatIsGathered();
    void aCancelledLoupeLeavesNothing();
    void asksOnceAtATime();
    void forgetsWhoIsGone();
    void keepsTheNotchOpenMeanwhile();
    void keepsItOpenForTheFileChooser();
    void storesEveryChange();
    void takesChangesOfFavoritesBack();
};

namespace {

constexpr PickedColour kOrange{1, 0.5, 0};
constexpr SampledColor kOrangeColor{1, 0.5, 0};
constexpr PickedColour kBlue{0, 0, 1};
constexpr SampledColor kBlueColor{0, 0, 1};

struct ColorsFixture : FilesFixture
{
    FakeColourPicker &loupe = platform.colourPicker();
    std::unique_ptr<ColorService> colors = std::make_unique<ColorService>(database, loupe, controller);
    QList<std::optional<SampledColor>> answers;

    void sample(const QObject &context)
    {
        colors->sample(&context, [this](const std::optional<SampledColor> &color) { answers.append(color); });
    }
    void openNotch()
    {
        platform.screens().arrange({FakeScreens::make(QStringLiteral("one"), QRectF(0, 0, 1920, 1080))});
        platform.pointerNear().moveToScreen(QStringLiteral("one"));
        controller.start(panel);
        controller.present(KestroModule::Color, NotchController::Focus::Take, NotchController::Opening::Explicit);
    }
    bool closesOnAPressOutside()
    {
        platform.outsideActivity().press();
        return viewModel.phase() != Phase::Expanded;
    }
};

} // namespace

void ColorServiceTest::recordsWhatWasPicked()
{
    ColorsFixture fixture;
    QSignalSpy sampled(fixture.colors.get(), &ColorService::sampled);
    fixture.sample(fixture.panel);
    QVERIFY(fixture.colors->isSampling());
    QVERIFY(fixture.loupe.isOpen());
    fixture.loupe.choose(kOrange);
    QVERIFY(!fixture.colors->isSampling());
    QCOMPARE(fixture.answers, QList<std::optional<SampledColor>>{kOrangeColor});
    QCOMPARE(fixture.colors->recents(), QList<SampledColor>{kOrangeColor});
    QCOMPARE(sampled.size(), 1);

    fixture.sample(fixture.panel);
    fixture.loupe.close();
    QVERIFY(!fixture.colors->isSampling());
    QCOMPARE(fixture.answers.last(), std::nullopt);
    QCOMPARE(fixture.colors->recents().size(), 1);
    QCOMPARE(sampled.size(), 1);
}

void ColorServiceTest::recordsAllThatIsGathered()
{
    ColorsFixture fixture;
    fixture.sample(fixture.panel);
    fixture.loupe.gather(kOrange);
    fixture.loupe.gather(kBlue);
    QCOMPARE(fixture.colors->recents(), (QList<SampledColor>{kBlueColor, kOrangeColor}));
    QVERIFY(fixture.answers.isEmpty());
    QVERIFY(fixture.colors->isSampling());
    // Cancelled then: the last one of them was picked.
    fixture.loupe.close();
    QCOMPARE(fixture.answers, QList<std::optional<SampledColor>>{kBlueColor});
    QCOMPARE(fixture.colors->recents(), (QList<SampledColor>{kBlueColor, kOrangeColor}));
}

void ColorServiceTest::aCancelledLoupeLeavesNothing()
{
    ColorsFixture fixture;
    fixture.openNotch();
    fixture.colors->cancelSampling();
    fixture.sample(fixture.panel);
    fixture.loupe.gather(kOrange);
    fixture.colors->clearRecents();
    fixture.colors->cancelSampling();
    QVERIFY(!fixture.colors->isSampling());
    QVERIFY(!fixture.loupe.isOpen());
    QCOMPARE(fixture.answers, QList<std::optional<SampledColor>>{std::nullopt});
    QCOMPARE(fixture.colors->recents(), QList<SampledColor>());
    QVERIFY(fixture.closesOnAPressOutside());
}

void ColorServiceTest::asksOnceAtATime()
{
    ColorsFixture fixture;
    fixture.sample(fixture.panel);
    fixture.sample(fixture.panel);
    fixture.loupe.choose(kBlue);
    QCOMPARE(fixture.answers.size(), 1);
    // A loupe that somebody else has opened.
    QObject stranger;
    QVERIFY(fixture.loupe.pick(&stranger, {}));
    fixture.sample(fixture.panel);
    QVERIFY(!fixture.colors->isSampling());
    fixture.openNotch();
    QVERIFY(fixture.closesOnAPressOutside());
    QCOMPARE(fixture.answers.size(), 1);
}

void ColorServiceTest::forgetsWhoIsGone()
{
    ColorsFixture fixture;
    auto view = std::make_unique<QObject>();
    fixture.sample(*view);
    view.reset();
    fixture.loupe.choose(kBlue);
    QVERIFY(fixture.answers.isEmpty());
    // The colour is kept all the same.
    QCOMPARE(fixture.colors->recents(), QList<SampledColor>{kBlueColor});
    fixture.colors->sample(&fixture.panel, {});
    fixture.loupe.choose(kOrange);
    QCOMPARE(fixture.colors->recents().size(), 2);
    fixture.sample(fixture.panel);
    fixture.colors.reset();
    QVERIFY(!fixture.loupe.isOpen());
}

void ColorServiceTest::keepsTheNotchOpenMeanwhile()
{
    ColorsFixture fixture;
    fixture.openNotch();
    for (const bool isPicked : {true, false}) {
        fixture.sample(fixture.panel);
        QVERIFY(!fixture.closesOnAPressOutside());
        if (isPicked)
            fixture.loupe.choose(kBlue);
        else
            fixture.loupe.close();
    }
    QVERIFY(fixture.closesOnAPressOutside());
}

void ColorServiceTest::keepsItOpenForTheFileChooser()
{
    ColorsFixture fixture;
    fixture.openNotch();
    const auto choose = [&] {
        fixture.picker.pick(FileChoice(), &fixture.panel, FilePicker::AfterCancel::CollapseAtOnce, [](auto) {});
    };
    choose();
    fixture.sample(fixture.panel);
    fixture.loupe.choose(kBlue);
    QVERIFY(!fixture.closesOnAPressOutside());
    QVERIFY(fixture.platform.panelHost().isGivingWay());
    fixture.sample(fixture.panel);
    fixture.chooser.close({});
    QVERIFY(!fixture.closesOnAPressOutside());
    fixture.loupe.close();
    QVERIFY(fixture.closesOnAPressOutside());
}

void ColorServiceTest::storesEveryChange()
{
    ColorsFixture fixture;
    const auto stored = [&] { return ColorLists::load(fixture.database); };
    fixture.colors->record(kBlueColor);
    fixture.colors->record(kOrangeColor);
    fixture.colors->toggleFavorite(kBlueColor);
    QCOMPARE(stored(), fixture.colors->lists());
    QVERIFY(fixture.colors->isFavorite(kBlueColor) && !fixture.colors->isFavorite(kOrangeColor));
    fixture.colors->clearRecents();
    QCOMPARE(stored(), (ColorLists{{}, {kBlueColor}}));
    fixture.colors->clearFavorites();
    QCOMPARE(stored(), ColorLists());
    fixture.colors->record(kOrangeColor);
    QCOMPARE((ColorService(fixture.database, fixture.loupe, fixture.controller).lists()), fixture.colors->lists());
}

void ColorServiceTest::takesChangesOfFavoritesBack()
{
    ColorsFixture fixture;
    ColorService &colors = *fixture.colors;
    QVERIFY(!colors.canUndo());
    QList<QList<SampledColor>> steps;
    for (int step = 0; step < 25; ++step) {
        steps.append(colors.favorites());
        colors.toggleFavorite({step / 255.0, 0, 0});
    }
    for (const int removed : {12, 3}) {
        steps.append(colors.favorites());
        colors.toggleFavorite({removed / 255.0, 0, 0});
    }
    colors.record(kBlueColor);
    // The last one first, and what the twenty-fifth had displaced as well.
    while (!steps.isEmpty()) {
        QVERIFY(colors.canUndo());
        colors.undo();
        QCOMPARE(colors.favorites(), steps.takeLast());
        QCOMPARE(ColorLists::load(fixture.database).favorites, colors.favorites());
    }
    QVERIFY(!colors.canUndo());
    colors.undo();
    QCOMPARE(colors.recents(), QList<SampledColor>{kBlueColor});
    colors.toggleFavorite(kBlueColor);
    colors.lapse();
    QVERIFY(!colors.canUndo());
}

OSTRELLE_TEST(ColorServiceTest)
#include "ColorServiceTest.moc"
