#include "PanelFixture.h"
#include "notch/controls/EdgeFade.h"
#include "notch/controls/EmptyStateView.h"
#include "notch/controls/GlyphButton.h"
#include "notch/controls/InlineSearchField.h"
#include "notch/controls/MetadataGrid.h"
#include "notch/controls/MetadataRow.h"
#include "notch/controls/NotchMenu.h"
#include "notch/controls/PlayBadge.h"
#include "notch/controls/SmoothScroll.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QWheelEvent>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

/// A black place for controls, wide enough for what they paint around themselves.
struct Stage : ControlFixture
{
    QWidget ground;

    Stage()
    {
        ground.resize(200, 80);
        QPalette palette;
        palette.setColor(QPalette::Window, Qt::black);
        ground.setPalette(palette);
        ground.setAutoFillBackground(true);
    }
    QImage picture() { return ground.grab().toImage().convertToFormat(QImage::Format_RGB32); }
};

} // namespace

class ControlsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void ordinaryGlyphButtonGlowsUnderThePointer();
    void destructiveGlyphButtonTurnsRedWithoutGlow();
    void ringAppearsOnlyAfterAKeyMovedTheFocus();
    void ringIsNotCutWhereTheButtonStands();
    void returnActivatesAButton();
    void playBadgeKeepsItsPlaceWhileHidden();
    void searchFieldEmptiesItself();
    void searchFieldLetsUnusedKeysPass();
    void fieldsUseTheProgramsOwnWayToTheClipboard();
    void emptyStateLeavesByFading();
    void edgeFadeKeepsTheMiddleAndClearsTheEdge_data();
    void edgeFadeKeepsTheMiddleAndClearsTheEdge();
    void metadataRowCopiesExactlyItsValue();
    void metadataGridKeepsTheRowsThatStay();
    void playBadgeShakesAndComesBack();
    void scrollGoesByStepsAndPixels();
    void scrollStaysWhereOthersMoveIt();
    void aMenuWarnsOfWhatTakesSomethingAway_data();
    void aMenuWarnsOfWhatTakesSomethingAway();
};

namespace {

struct Scroll : ControlFixture
{
    QScrollBar bar;
    SmoothScroll scroll;

    Scroll()
        : scroll(context, bar, 60)
    {
        bar.setRange(0, 500);
    }
    void turnWheel(int angle, int pixels = 0)
    {
        scroll.turnWheel(QWheelEvent({}, {}, {0, pixels}, {0, angle}, Qt::NoButton, {}, Qt::NoScrollPhase, false));
    }
};

} // namespace

void ControlsTest::scrollGoesByStepsAndPixels()
{
    Scroll stage;
    stage.turnWheel(-120);
    stage.turnWheel(-120); // on its way
    QCOMPARE(stage.bar.value(), 0);
    stage.settle();
    QCOMPARE(stage.bar.value(), 120);
    stage.turnWheel(-120, -7);
    QCOMPARE(stage.bar.value(), 127);
    stage.turnWheel(1200);
    stage.settle();
    QCOMPARE(stage.bar.value(), 0);
}

void ControlsTest::scrollStaysWhereOthersMoveIt()
{
    Scroll stage;
    stage.scroll.moveTo(400);
    stage.clock.advance(60ms);
    QVERIFY(stage.bar.value() > 0 && stage.bar.value() < 400);
    stage.bar.setValue(50);
    stage.settle();
    QCOMPARE(stage.bar.value(), 50);
    stage.turnWheel(-120);
    stage.settle();
    QCOMPARE(stage.bar.value(), 110);
}

void ControlsTest::ordinaryGlyphButtonGlowsUnderThePointer()
{
    Stage stage;
    GlyphButton button(stage.context, {.symbol = QStringLiteral("pin"), .help = QStringLiteral("Pin")}, &stage.ground);
    button.move(60, 30);
    stage.ground.show();
    const QImage before = stage.picture();
    ControlFixture::enter(button);
    stage.settle();
    const QImage hovered = stage.picture();
    const QPoint beside(60 + 22 + 2, 41);
    QCOMPARE(before.pixel(beside), qRgb(0, 0, 0));
    QVERIFY(qRed(hovered.pixel(beside)) > 20);
    QCOMPARE(button.accessibleName(), QStringLiteral("Pin"));
    ControlFixture::leave(button);
    stage.settle();
    QCOMPARE(stage.picture(), before);
}

void ControlsTest::destructiveGlyphButtonTurnsRedWithoutGlow()
{
    Stage stage;
    GlyphButton button(stage.context,
                       {.symbol = QStringLiteral("trash"),
                        .help = QStringLiteral("Delete"),
                        .purpose = GlyphButton::Purpose::Destructive},
                       &stage.ground);
    button.move(60, 30);
    stage.ground.show();
    ControlFixture::enter(button);
    stage.settle();
    const QImage hovered = stage.picture();
    QCOMPARE(hovered.pixel(60 + 22 + 2, 41), qRgb(0, 0, 0));
    int reddest = 0;
    for (int y = 30; y < 52; ++y) {
        for (int x = 60; x < 82; ++x)
            reddest = std::max(reddest, qRed(hovered.pixel(x, y)) - qBlue(hovered.pixel(x, y)));
    }
    QVERIFY(reddest > 100);
}

void ControlsTest::ringAppearsOnlyAfterAKeyMovedTheFocus()
{
    Stage stage;
    GlyphButton button(stage.context, {.symbol = QStringLiteral("pin"), .help = QStringLiteral("Pin")}, &stage.ground);
    button.move(60, 30);
    stage.ground.show();
    QVERIFY(QTest::qWaitForWindowActive(&stage.ground));
    const QPoint onRing(71, 30 - 3);
    button.setFocus(Qt::MouseFocusReason);
    QCOMPARE(stage.picture().pixel(onRing), qRgb(0, 0, 0));
    button.clearFocus();
    button.setFocus(Qt::TabFocusReason);
    QVERIFY(qRed(stage.picture().pixel(onRing)) > 100);
    button.clearFocus();
    QCOMPARE(stage.picture().pixel(onRing), qRgb(0, 0, 0));
}

void ControlsTest::ringIsNotCutWhereTheButtonStands()
{
    Stage stage;
    QWidget row(&stage.ground);
    row.setGeometry(20, 30, 62, 22);
    GlyphButton button(stage.context, {.symbol = QStringLiteral("pin"), .help = QStringLiteral("Pin")}, &row);
    button.move(40, 0);
    stage.ground.show();
    QVERIFY(QTest::qWaitForWindowActive(&stage.ground));
    const QPoint beside(82 + 2, 41);
    button.clearFocus(); // the window gave it to the first one
    button.setFocus(Qt::TabFocusReason);
    QVERIFY(qRed(stage.picture().pixel(beside)) > 100);
    row.hide();
    QCOMPARE(stage.picture().pixel(beside), qRgb(0, 0, 0));
}

void ControlsTest::returnActivatesAButton()
{
    Stage stage;
    GlyphButton button(stage.context, {.symbol = QStringLiteral("pin"), .help = QStringLiteral("Pin")}, &stage.ground);
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    QTest::keyClick(&button, Qt::Key_Return);
    QTest::keyClick(&button, Qt::Key_Space);
    QCOMPARE(clicked.count(), 2);
    button.setEnabled(false);
    QTest::keyClick(&button, Qt::Key_Return);
    QCOMPARE(clicked.count(), 2);
}

void ControlsTest::playBadgeKeepsItsPlaceWhileHidden()
{
    Stage stage;
    const QImage bare = stage.picture();
    PlayBadge badge(stage.context, 24, &stage.ground);
    badge.move(60, 30);
    stage.ground.show();
    QCOMPARE(stage.picture(), bare);
    QCOMPARE(badge.geometry(), QRect(60, 30, 24, 24));
    // What lies below gets the pointer.
    QCOMPARE(stage.ground.childAt(72, 42), nullptr);
    badge.setPlaying(true);
    badge.setShown(true);
    stage.settle();
    QCOMPARE(badge.toolTip(), QStringLiteral("Stop"));
    QCOMPARE(stage.ground.childAt(72, 42), &badge);
    const QImage playing = stage.picture();
    QCOMPARE(playing.pixel(72, 42), qRgb(255, 255, 255));
    badge.setPlaying(false);
    QCOMPARE(badge.accessibleName(), QStringLiteral("Play"));
    QVERIFY(stage.picture() != playing);
    badge.setShown(false);
    stage.settle();
    QCOMPARE(stage.picture(), bare);
}

void ControlsTest::searchFieldEmptiesItself()
{
    Stage stage;
    InlineSearchField search(stage.context, stage.clipboard, QStringLiteral("Search history"), &stage.ground);
    search.setGeometry(10, 10, 180, InlineSearchField::kHeight);
    stage.ground.show();
    auto *clear = search.findChild<QAbstractButton *>();
    QVERIFY(clear->isHidden());
    QTest::keyClicks(&search.field(), QStringLiteral("ferry"));
    stage.settle();
    QVERIFY(clear->isVisible());
    QSignalSpy changed(&search, &InlineSearchField::textChanged);
    clear->click();
    stage.settle();
    QCOMPARE(search.text(), QString());
    QCOMPARE(changed.count(), 1);
    QVERIFY(clear->isHidden());
}

void ControlsTest::searchFieldLetsUnusedKeysPass()
{
    struct KeyCatcher : QWidget
    {
        QList<int> keys;
        void keyPressEvent(QKeyEvent *event) override { keys.append(event->key()); }
    };
    ControlFixture fixture;
    KeyCatcher catcher;
    InlineSearchField search(fixture.context, fixture.clipboard, QStringLiteral("Search"), &catcher);
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Escape, Qt::Key_Up, Qt::Key_Down})
        QTest::keyClick(&search.field(), key);
    QCOMPARE(catcher.keys, (QList<int>{Qt::Key_Escape, Qt::Key_Up, Qt::Key_Down}));
}

void ControlsTest::fieldsUseTheProgramsOwnWayToTheClipboard()
{
    Stage stage;
    InlineSearchField search(stage.context, stage.clipboard, QStringLiteral("Search"), &stage.ground);
    QLineEdit &field = search.field();
    const auto offered = [&stage] { return std::get<QString>(*stage.clipboard.offer()); };
    const qint64 before = stage.clipboard.changeCount();
    QTest::keyClick(&field, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(stage.clipboard.changeCount(), before); // nothing is selected
    QTest::keyClicks(&field, QStringLiteral("the ferry"));
    field.setSelection(4, 5);
    QTest::keyClick(&field, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(offered(), QStringLiteral("ferry"));
    QCOMPARE(field.text(), QStringLiteral("the ferry"));
    field.setSelection(0, 4);
    QTest::keyClick(&field, Qt::Key_Delete, Qt::ShiftModifier);
    QCOMPARE(offered(), QStringLiteral("the "));
    QCOMPARE(field.text(), QStringLiteral("ferry"));

    stage.clipboard.copyText(QStringLiteral("night\nferry"));
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Insert, Qt::ShiftModifier);
    stage.clock.advance(10ms);
    QCOMPARE(field.text(), QStringLiteral("night ferry"));
    // Who hangs keeps nobody waiting.
    FakeClipboardPort::Owner hung;
    hung.text = QStringLiteral("never");
    hung.hangs = true;
    stage.clipboard.copy(hung);
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClicks(&field, QStringLiteral("!"));
    stage.clock.advance(FakeClipboardPort::kDeadline);
    QCOMPARE(field.text(), QStringLiteral("night ferry!"));
}

void ControlsTest::emptyStateLeavesByFading()
{
    Stage stage;
    EmptyStateView state(stage.context,
                         {.symbol = QStringLiteral("folder"), .message = QStringLiteral("Nothing"), .hint = {}},
                         &stage.ground);
    state.setGeometry(stage.ground.rect());
    stage.ground.show();
    state.disappear();
    QVERIFY(state.isVisible());
    stage.settle();
    QVERIFY(state.isHidden());
    state.appear();
    QVERIFY(state.isVisible());
    stage.settle();
    QVERIFY(!stage.frames.isRunning());
}

void ControlsTest::edgeFadeKeepsTheMiddleAndClearsTheEdge_data()
{
    QTest::addColumn<double>("ratio");
    QTest::newRow("scale 1") << 1.0;
    QTest::newRow("scale 1.25") << 1.25;
    QTest::newRow("scale 2") << 2.0;
}

void ControlsTest::edgeFadeKeepsTheMiddleAndClearsTheEdge()
{
    QFETCH(double, ratio);
    QImage image(QSizeF(100 * ratio, 80 * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::blue);
    QPainter painter(&image);
    painter.translate(10, 10);
    const QRectF list(0, 0, 80, 60);
    paintEdgeFaded(painter, list, {.bottom = 22}, [&](QPainter &p) { p.fillRect(list, Qt::red); });
    painter.end();
    const auto at = [&](double y) { return image.pixelColor(QPointF(50 * ratio, y * ratio).toPoint()); };
    QCOMPARE(at(12), QColor(Qt::red));
    QCOMPARE(at(46), QColor(Qt::red));
    QCOMPARE(at(72), QColor(Qt::blue));
    // Across the band it only ever falls, and nowhere is there a seam.
    int previous = 255;
    for (double y = 46; y < 70; y += 1 / ratio) {
        const int red = at(y).red();
        QVERIFY2(red <= previous + 1 && previous - red < 30, qPrintable(QString::number(y)));
        previous = red;
    }
    QVERIFY(previous < 25);

    // The same at the sides.
    image.fill(Qt::blue);
    QPainter sideways(&image);
    sideways.translate(10, 10);
    paintEdgeFaded(sideways, list, {.left = 16, .right = 20}, [&](QPainter &p) { p.fillRect(list, Qt::red); });
    sideways.end();
    const auto across = [&](double x) { return image.pixelColor(QPointF(x * ratio, 40 * ratio).toPoint()).red(); };
    QCOMPARE(across(9), 0);
    QVERIFY(across(11) < 40 && across(18) > 90 && across(18) < 165 && across(27) == 255);
    QVERIFY(across(69) == 255 && across(80) > 90 && across(80) < 165 && across(88) < 40);
    QCOMPARE(across(91), 0);
}

void ControlsTest::metadataRowCopiesExactlyItsValue()
{
    Stage stage;
    MetadataRow row(stage.context, stage.clipboard, stage.haptics,
                    {.label = QStringLiteral("Size"), .value = QStringLiteral(" 1920 × 1080 px ")}, &stage.ground);
    row.setGeometry(0, 0, 200, MetadataRow::kHeight);
    stage.ground.show();
    auto *copy = row.findChild<GlyphButton *>();
    QVERIFY(copy->isHidden());
    ControlFixture::enter(row);
    stage.settle();
    QVERIFY(copy->isVisible());
    QCOMPARE(copy->toolTip(), QStringLiteral("Copy Size"));
    copy->click();
    QVERIFY(stage.clipboard.offer());
    QCOMPARE(std::get<QString>(*stage.clipboard.offer()), QStringLiteral(" 1920 × 1080 px "));
    QCOMPARE(stage.ticks(), 1);
}

void ControlsTest::metadataGridKeepsTheRowsThatStay()
{
    Stage stage;
    MetadataGrid grid(stage.context, stage.clipboard, stage.haptics, 2, &stage.ground);
    grid.resize(424, 0);
    grid.setFacts({{QStringLiteral("Tempo"), QStringLiteral("84")},
                   {QStringLiteral("Format"), QStringLiteral("WAV")},
                   {QStringLiteral("Size"), QStringLiteral("1 KB")}});
    stage.ground.show();
    const QPointer<MetadataRow> format = grid.row(QStringLiteral("Format"));
    QCOMPARE(format->geometry(), QRect(224, 0, 200, 27));
    QCOMPARE(grid.height(), 54);
    QCOMPARE(grid.text(), QStringLiteral("Tempo\t84\nFormat\tWAV\nSize\t1 KB\n"));
    // What stands at the end of a row leaves the value its room.
    auto &accessory = makeChild<QPushButton>(&grid, QStringLiteral("×2"));
    grid.row(QStringLiteral("Tempo"))->setAccessory(&accessory);
    QCOMPARE(accessory.geometry().x() + accessory.width(), 200);
    const auto *value = grid.row(QStringLiteral("Tempo"))->findChild<QLineEdit *>();
    QVERIFY(value->geometry().x() + value->width() <= accessory.x());

    grid.setFacts(
        {{QStringLiteral("Format"), QStringLiteral("FLAC")}, {QStringLiteral("Size"), QStringLiteral("2 KB")}});
    stage.settle();
    QCOMPARE(grid.row(QStringLiteral("Format")), format.data());
    QCOMPARE(format->geometry(), QRect(0, 0, 200, 27));
    QCOMPARE(format->findChild<QLineEdit *>()->text(), QStringLiteral("FLAC"));
    QVERIFY(grid.row(QStringLiteral("Tempo")) == nullptr);
    QCOMPARE(grid.findChildren<MetadataRow *>().size(), 2);
}

void ControlsTest::playBadgeShakesAndComesBack()
{
    Stage stage;
    PlayBadge badge(stage.context, 24, &stage.ground);
    badge.move(60, 30);
    badge.setShown(true);
    stage.ground.show();
    stage.settle();
    const QImage rest = stage.picture();
    badge.shake();
    int leftmost = 60;
    int rightmost = 60;
    for (int i = 0; i < 20; ++i) {
        stage.clock.advance(17ms);
        leftmost = std::min(leftmost, badge.x());
        rightmost = std::max(rightmost, badge.x());
    }
    QVERIFY(leftmost < 60 && rightmost > 60);
    stage.settle();
    QCOMPARE(stage.picture(), rest);
    QVERIFY(!stage.frames.isRunning());
    // Where the desktop wants no movement it stays where it is, and fades.
    stage.platform.appearance().setPrefersReducedMotion(true);
    badge.shake();
    stage.clock.advance(50ms);
    QCOMPARE(badge.pos(), QPoint(60, 30));
    QVERIFY(stage.picture() != rest);
    stage.settle();
    QCOMPARE(stage.picture(), rest);
}

void ControlsTest::aMenuWarnsOfWhatTakesSomethingAway_data()
{
    QTest::addColumn<AppearancePreference>("appearance");
    QTest::newRow("dark") << AppearancePreference::Dark;
    QTest::newRow("light") << AppearancePreference::Light;
}

void ControlsTest::aMenuWarnsOfWhatTakesSomethingAway()
{
    QFETCH(AppearancePreference, appearance);
    Stage stage;
    stage.settings.setAppearance(appearance);
    stage.settle();
    NotchMenu menu(stage.appearance, &stage.ground);
    QStringList chosen;
    for (const auto &[text, purpose] : {std::pair(QStringLiteral("Open"), NotchMenu::Purpose::Ordinary),
                                        std::pair(QStringLiteral("Remove"), NotchMenu::Purpose::Destructive)})
        menu.addEntry(
            text, &stage.ground, [&chosen, name = text] { chosen.append(name); }, purpose);
    menu.resize(menu.sizeHint());
    const QImage picture = menu.grab().toImage();
    const auto redness = [&](int entry) {
        const QRect place = menu.actionGeometry(menu.actions().at(entry));
        int most = 0;
        for (int y = place.top(); y <= place.bottom(); ++y) {
            for (int x = place.left(); x <= place.right(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                most = std::max(most, color.red() - std::max(color.green(), color.blue()));
            }
        }
        return most;
    };
    QVERIFY2(redness(0) < 20, qPrintable(QString::number(redness(0))));
    QVERIFY2(redness(1) > 120, qPrintable(QString::number(redness(1))));
    menu.actions().at(1)->trigger();
    QVERIFY(chosen.isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(chosen, QStringList{QStringLiteral("Remove")});
}

OSTRELLE_TEST(ControlsTest)
#include "ControlsTest.moc"
