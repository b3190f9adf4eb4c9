#include "inspectors/ColorModuleView.h"
#include "FilesFixture.h"
#include "inspectors/ColorService.h"
#include "inspectors/ColorTextField.h"
#include "inspectors/ColorValueRow.h"
#include "inspectors/LargeSwatch.h"
#include "inspectors/Swatch.h"
#include "inspectors/SwatchShelf.h"
#include "notch/FrameClock.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ActionPrompt.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <memory>

using namespace ostrelle;
using namespace std::chrono_literals;

namespace {

SampledColor hex(const char *text)
{
    const int value = QByteArray(text).mid(1).toInt(nullptr, 16);
    return {(value >> 16) / 255.0, (value >> 8 & 255) / 255.0, (value & 255) / 255.0};
}

const SampledColor kOrange = hex("#F7B267");
const SampledColor kTeal = hex("#1D5F7C");
const SampledColor kPlum = hex("#5B2A57");

/// The tool on screen, with the focus, with what was kept before.
struct ColorTool : FilesFixture
{
    FakeColourPicker &loupe = platform.colourPicker();
    ColorService colors{database, loupe, controller};
    FrameClock frames{clock};
    NotchAppearance appearance{settings, platform.appearance()};
    QWidget window;
    std::unique_ptr<ColorModuleView> view;

    /// The last one is the newest.
    explicit ColorTool(const QList<SampledColor> &recents = {}, const QList<SampledColor> &favorites = {})
    {
        for (const SampledColor &color : recents)
            colors.record(color);
        for (const SampledColor &color : favorites)
            colors.toggleFavorite(color);
        colors.lapse();
        const ColorModuleView::Surroundings around{colors, clipboard, haptics, platform.popups(), clock};
        view = std::make_unique<ColorModuleView>(around, ControlContext{appearance, frames}, &window);
        QObject::connect(view.get(), &ToolView::headerActionsChanged, &window, [this] { showActions(); });
        showActions();
        resize();
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("The window did not become active");
        view->appeared();
        settle();
    }
    void resize()
    {
        window.resize(588, static_cast<int>(*view->wantedBodyHeight()) - 106);
        view->resize(window.size());
    }
    /// As the chrome does.
    void showActions()
    {
        for (QWidget *action : view->headerActions()) {
            action->setParent(&window);
            action->show();
        }
    }
    void settle()
    {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
            clock.advance(400ms);
        }
    }
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    static void type(const char *text)
    {
        for (const char *character = text; *character != 0; ++character)
            typeOne(*character);
    }
    /// As a key on any keyboard does that has the character.
    static void typeOne(char character) { QTest::keyClick(QApplication::focusWidget(), character); }
    void paste(const QString &text)
    {
        clipboard.copyText(text);
        press(Qt::Key_V, Qt::ControlModifier);
        clock.advance(10ms);
    }

    QString current() const { return view->current() ? view->current()->hexString() : QString(); }
    /// The visible button of that tooltip or name, the header's included; null when there is none.
    QAbstractButton *button(const QString &name) const
    {
        for (auto *button : window.findChildren<QAbstractButton *>()) {
            if ((button->toolTip() == name || button->accessibleName() == name) && button->isVisibleTo(&window))
                return button;
        }
        return nullptr;
    }
    SwatchShelf *shelf(const QString &title) const
    {
        for (auto *shelf : view->findChildren<SwatchShelf *>()) {
            if (shelf->accessibleName() == title && shelf->isVisibleTo(view.get()))
                return shelf;
        }
        return nullptr;
    }
    Swatch *swatch(const QString &title, const SampledColor &color) const
    {
        for (auto *swatch : shelf(title)->findChildren<Swatch *>()) {
            if (swatch->color() == color && swatch->isEnabled())
                return swatch;
        }
        return nullptr;
    }
    static QString focusedColor()
    {
        const auto *swatch = qobject_cast<Swatch *>(QApplication::focusWidget());
        return swatch != nullptr ? swatch->color().hexString() : QString();
    }
    QStringList rows() const
    {
        QStringList values;
        for (const ColorValueRow *row : view->findChildren<ColorValueRow *>())
            values.append(row->value());
        return values;
    }
    /// The rows with a check mark.
    QString copiedRows() const
    {
        QString rows;
        for (const ColorValueRow *row : view->findChildren<ColorValueRow *>()) {
            if (!row->accessibleDescription().isEmpty())
                rows += colorFormLabel(row->form());
        }
        return rows;
    }
    QString copiedText() const
    {
        const auto *text = clipboard.offer() ? std::get_if<QString>(&*clipboard.offer()) : nullptr;
        return text != nullptr ? *text : QString();
    }
    QLineEdit *field() const
    {
        auto *field = view->findChild<ColorTextField *>();
        return field->isVisibleTo(view.get()) ? field->findChild<QLineEdit *>() : nullptr;
    }
    QColor pixel(const QPointF &place) { return window.grab().toImage().pixelColor(place.toPoint()); }
};

const QString kRecent = QStringLiteral("Recent");
const QString kFavorites = QStringLiteral("Favorites");

} // namespace

class ColorModuleViewTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void invitesToPickTheFirstColor();
    void wantsTheHeightOfWhatItShows();
    void standsAsDrawn();
    void writesOnTheSwatchInBlackOrWhite();
    void showsTheNewestColorAtFirst();
    void copiesAFormAndSaysSoForAWhile();
    void keysCopyWhateverHasTheFocus();
    void theHeartKeepsAColor();
    void swatchesHaveAMenu();
    void arrowKeysWalkTheSwatches();
    void deletedFavoritesComeBack();
    void theTabKeyVisitsAll();
    void longShelvesScroll();
    void takesATypedColor();
    void leavesTheFieldWithoutOne();
    void takesAPastedColor();
    void paintsColorsBeyondTheirRange();
};

void ColorModuleViewTest::invitesToPickTheFirstColor()
{
    ColorTool tool;
    QCOMPARE(tool.view->findChild<ActionPrompt *>()->accessibleName(),
             QStringLiteral("Pick a color from anywhere on your screen"));
    QVERIFY(tool.view->headerActions().isEmpty());
    QVERIFY(!tool.button(QStringLiteral("HEX")));
    ColorTool::typeOne('1');
    QVERIFY(!tool.clipboard.offer());
    QSignalSpy actions(tool.view.get(), &ToolView::headerActionsChanged);
    tool.button(QStringLiteral("Pick Color"))->click();
    QVERIFY(tool.colors.isSampling());
    tool.loupe.close();
    QCOMPARE(tool.current(), QString());
    tool.button(QStringLiteral("Pick Color"))->click();
    tool.loupe.choose({kOrange.r, kOrange.g, kOrange.b});
    tool.settle();
    QCOMPARE(tool.rows(), (QStringList{QStringLiteral("#F7B267"), QStringLiteral("247, 178, 103"),
                                       QStringLiteral("31°, 90%, 69%")}));
    QCOMPARE(actions.size(), 1);
    QCOMPARE(tool.view->headerActions().size(), 1);
    auto *another = static_cast<QAbstractButton *>(tool.view->headerActions().first());
    QCOMPARE(another->toolTip(), QStringLiteral("Pick another color"));
    another->click();
    tool.loupe.choose({kTeal.r, kTeal.g, kTeal.b});
    QCOMPARE(tool.current(), kTeal.hexString());
    tool.button(QStringLiteral("Pick Color"))->click();
    tool.loupe.close();
    QCOMPARE(tool.current(), kTeal.hexString());
    // Whoever opens the loupe, what it finds is shown.
    tool.colors.sample(&tool.window, {});
    tool.loupe.choose({kPlum.r, kPlum.g, kPlum.b});
    QCOMPARE(tool.current(), kPlum.hexString());
}

void ColorModuleViewTest::wantsTheHeightOfWhatItShows()
{
    ColorTool tool;
    QSignalSpy changed(tool.view.get(), &ToolView::wantedBodyHeightChanged);
    const auto height = [&] { return *tool.view->wantedBodyHeight() - 106; };
    QCOMPARE(height(), 150.0);
    // Not seen through the loupe: it is listed, and nothing is shown by itself.
    tool.colors.record(kOrange);
    QCOMPARE(height(), 150.0 + 24 + 48);
    tool.colors.toggleFavorite(kTeal);
    QCOMPARE(height(), 150.0 + 24 + 2 * 48 + 8);
    tool.resize();
    tool.settle();
    QTest::mouseClick(tool.swatch(kFavorites, kTeal), Qt::LeftButton);
    QCOMPARE(height(), 182.0 + 24 + 2 * 48 + 8);
    tool.colors.clearRecents();
    QCOMPARE(height(), 182.0 + 24 + 48);
    QCOMPARE(changed.size(), 4);
    tool.colors.clearFavorites();
    QCOMPARE(height(), 182.0);
    QCOMPARE(tool.current(), kTeal.hexString());
}

void ColorModuleViewTest::standsAsDrawn()
{
    ColorTool tool({kPlum, kOrange}, {kTeal});
    const auto place = [&](const QWidget *widget) {
        return QRect(widget->mapTo(tool.view.get(), QPoint()), widget->size());
    };
    QCOMPARE(place(tool.view->findChild<LargeSwatch *>()), QRect(14, 14, 204, 112));
    QCOMPARE(place(tool.button(QStringLiteral("Add to favorites"))), QRect(14, 136, 38, 30));
    QCOMPARE(place(tool.button(QStringLiteral("Pick Color"))), QRect(60, 136, 158, 30));
    const auto rows = tool.view->findChildren<ColorValueRow *>();
    for (int i = 0; i < 3; ++i)
        QCOMPARE(place(rows[i]), QRect(232, 14 + 53 * i, 342, 46));
    const QMargins overhang(Swatch::kOverhang, Swatch::kOverhang, Swatch::kOverhang, Swatch::kOverhang);
    QCOMPARE(place(tool.swatch(kRecent, kOrange)) - overhang, QRect(14, 194 + 22, 22, 22));
    QCOMPARE(place(tool.swatch(kRecent, kPlum)) - overhang, QRect(44, 194 + 22, 22, 22));
    QCOMPARE(place(tool.swatch(kFavorites, kTeal)) - overhang, QRect(14, 250 + 22, 22, 22));
    QCOMPARE(tool.pixel({25, 227}).name(), QStringLiteral("#f7b267"));
    QCOMPARE(tool.pixel({100, 40}).name(), QStringLiteral("#f7b267"));
    // The ring is around the one on display.
    const auto ring = [&](double x) { return tool.pixel({x, 216 - 2.0}); };
    QVERIFY(ring(25) != ring(55));
}

void ColorModuleViewTest::writesOnTheSwatchInBlackOrWhite()
{
    ColorTool tool({kOrange});
    const auto isWrittenIn = [&](const SampledColor &color, Qt::GlobalColor ink) {
        tool.colors.sample(&tool.window, {});
        tool.loupe.choose({color.r, color.g, color.b});
        tool.settle();
        const QImage picture = tool.view->findChild<LargeSwatch *>()->grab().toImage();
        for (int y = 90; y < 106; ++y) {
            for (int x = 10; x < 80; ++x) {
                if (picture.pixelColor(x, y) == QColor(ink))
                    return true;
            }
        }
        return false;
    };
    QVERIFY(isWrittenIn(hex("#FFFFFF"), Qt::black));
    QVERIFY(isWrittenIn(hex("#000000"), Qt::white));
    // Green is bright, and 0.6 is not.
    QVERIFY(isWrittenIn(hex("#00FF00"), Qt::black));
    QVERIFY(isWrittenIn(hex("#FF00FF"), Qt::white));
    QVERIFY(isWrittenIn({0.6, 0.6, 0.6}, Qt::white));
    QVERIFY(isWrittenIn({0.601, 0.601, 0.601}, Qt::black));
}

void ColorModuleViewTest::showsTheNewestColorAtFirst()
{
    ColorTool tool({kTeal, kOrange});
    QCOMPARE(tool.current(), kOrange.hexString());
    // What a command adds is listed and does not take its place.
    tool.colors.record(kPlum);
    tool.view->appeared();
    QCOMPARE(tool.current(), kOrange.hexString());
    QCOMPARE(tool.shelf(kRecent)->colors().first(), kPlum);
}

void ColorModuleViewTest::copiesAFormAndSaysSoForAWhile()
{
    ColorTool tool({kTeal, kOrange});
    const int ticks = tool.ticks();
    QTest::mouseClick(tool.button(QStringLiteral("Copy RGB")), Qt::LeftButton);
    QCOMPARE(tool.copiedText(), QStringLiteral("247, 178, 103"));
    QCOMPARE(tool.ticks(), ticks + 1);
    QCOMPARE(tool.copiedRows(), QStringLiteral("RGB"));
    tool.clock.advance(1s);
    // The mark is the accent's.
    const QImage picture = tool.window.grab(QRect(546, 67, 20, 46)).toImage();
    bool isMarked = false;
    for (int x = 0; x < picture.width(); ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            const QColor color = picture.pixelColor(x, y);
            isMarked = isMarked || (color.red() > color.green() + 60 && color.red() > color.blue() + 10);
        }
    }
    QVERIFY(isMarked);
    QTest::mouseClick(tool.button(QStringLiteral("Copy HSL")), Qt::LeftButton);
    QCOMPARE(tool.copiedText(), QStringLiteral("31°, 90%, 69%"));
    QCOMPARE(tool.copiedRows(), QStringLiteral("HSL"));
    tool.clock.advance(1399ms);
    QCOMPARE(tool.copiedRows(), QStringLiteral("HSL"));
    tool.clock.advance(1ms);
    QCOMPARE(tool.copiedRows(), QString());
    // The swatch is a way to the first one. The mark does not outlive its value.
    QTest::mouseClick(tool.view->findChild<LargeSwatch *>(), Qt::LeftButton);
    QCOMPARE(tool.copiedRows(), QStringLiteral("HEX"));
    QTest::mouseClick(tool.swatch(kRecent, kTeal), Qt::LeftButton);
    QCOMPARE(tool.copiedRows(), QString());
    QCOMPARE(tool.copiedText(), QStringLiteral("#F7B267"));
    tool.settings.setHapticFeedback(false);
    QTest::mouseClick(tool.button(QStringLiteral("Copy HEX")), Qt::LeftButton);
    QCOMPARE(tool.ticks(), ticks + 3);
}

void ColorModuleViewTest::keysCopyWhateverHasTheFocus()
{
    ColorTool tool({kOrange}, {kTeal});
    const QList<QWidget *> places{tool.view.get(), tool.button(QStringLiteral("Pick Color")),
                                  tool.button(QStringLiteral("Copy HSL")), tool.view->headerActions().first(),
                                  tool.swatch(kFavorites, kTeal)};
    for (QWidget *place : places) {
        place->setFocus(Qt::OtherFocusReason);
        QCOMPARE(QApplication::focusWidget(), place);
        for (const auto &[key, text] : {std::pair('3', "31°, 90%, 69%"), {'2', "247, 178, 103"}, {'1', "#F7B267"}}) {
            ColorTool::typeOne(key);
            QCOMPARE(tool.copiedText(), QString::fromUtf8(text));
        }
        QCOMPARE(tool.copiedRows(), QStringLiteral("HEX"));
        const int writes = tool.ticks();
        ColorTool::typeOne('4');
        ColorTool::press(Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(tool.ticks(), writes);
    }
}

void ColorModuleViewTest::theHeartKeepsAColor()
{
    ColorTool tool({kTeal, kOrange});
    QVERIFY(!tool.shelf(kFavorites));
    tool.button(QStringLiteral("Add to favorites"))->click();
    QCOMPARE(tool.colors.favorites(), QList<SampledColor>{kOrange});
    QCOMPARE(tool.shelf(kFavorites)->colors(), QList<SampledColor>{kOrange});
    QVERIFY(!tool.button(QStringLiteral("Add to favorites")));
    QTest::mouseClick(tool.swatch(kRecent, kTeal), Qt::LeftButton);
    QVERIFY(tool.button(QStringLiteral("Add to favorites")));
    tool.colors.toggleFavorite(kTeal);
    tool.button(QStringLiteral("Remove from favorites"))->click();
    QCOMPARE(tool.colors.favorites(), QList<SampledColor>{kOrange});
    // The heart is filled in the accent.
    QTest::mouseClick(tool.swatch(kRecent, kOrange), Qt::LeftButton);
    tool.settle();
    const QColor heart = tool.pixel({14 + 19, 136 + 15});
    QVERIFY2(heart.red() > heart.green() + 80, qPrintable(heart.name()));
}

void ColorModuleViewTest::swatchesHaveAMenu()
{
    ColorTool tool({kTeal, kOrange}, {kPlum});
    const auto choose = [&](QWidget *widget, int action) {
        const QPoint middle = widget->rect().center();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, middle, widget->mapToGlobal(middle));
        QCoreApplication::sendEvent(widget, &event);
        QMenu *menu = tool.platform.popups().menu();
        QStringList texts;
        for (const QAction *entry : menu->actions())
            texts.append(entry->text());
        menu->actions().at(action)->trigger();
        menu->close();
        QCoreApplication::processEvents();
        return texts;
    };
    const QString add = QStringLiteral("Add to Favorites");
    const QString remove = QStringLiteral("Remove from Favorites");
    const QStringList copies{QStringLiteral("Copy HEX"), QStringLiteral("Copy RGB"), QStringLiteral("Copy HSL"),
                             QString()};
    QCOMPARE(choose(tool.swatch(kRecent, kTeal), 0), copies + QStringList(add));
    QCOMPARE(tool.copiedText(), kTeal.hexString());
    // It is of a colour that is not on display.
    QCOMPARE(tool.current(), kOrange.hexString());
    QCOMPARE(tool.copiedRows(), QString());
    QCOMPARE(choose(tool.swatch(kFavorites, kPlum), 2), copies + QStringList(remove));
    QCOMPARE(tool.copiedText(), kPlum.hslString());
    choose(tool.swatch(kRecent, kTeal), 4);
    QCOMPARE(tool.colors.favorites(), (QList<SampledColor>{kTeal, kPlum}));
    tool.settle();
    choose(tool.swatch(kRecent, kTeal), 4);
    choose(tool.view->findChild<LargeSwatch *>(), 4);
    QCOMPARE(tool.colors.favorites(), (QList<SampledColor>{kOrange, kPlum}));
}

void ColorModuleViewTest::arrowKeysWalkTheSwatches()
{
    ColorTool tool({hex("#000003"), hex("#000002"), hex("#000001")}, {hex("#00000B"), hex("#00000A")});
    const auto walk = [&](std::initializer_list<Qt::Key> keys) {
        for (const Qt::Key key : keys)
            ColorTool::press(key);
        // What is walked to is on display and has the focus.
        return ColorTool::focusedColor() == tool.current() ? tool.current() : QStringLiteral("astray");
    };
    QCOMPARE(walk({Qt::Key_Right}), QStringLiteral("#000002"));
    QCOMPARE(walk({Qt::Key_Right, Qt::Key_Right}), QStringLiteral("#000003"));
    QCOMPARE(walk({Qt::Key_Down}), QStringLiteral("#00000B"));
    QCOMPARE(walk({Qt::Key_Down, Qt::Key_Home}), QStringLiteral("#00000A"));
    QCOMPARE(walk({Qt::Key_Left, Qt::Key_Up}), QStringLiteral("#000001"));
    QCOMPARE(walk({Qt::Key_End, Qt::Key_Up}), QStringLiteral("#000003"));
    // From a button to the one on display, then on from there.
    tool.button(QStringLiteral("Copy RGB"))->setFocus();
    QCOMPARE(walk({Qt::Key_Down}), QStringLiteral("#000003"));
    tool.view->headerActions().first()->setFocus();
    QCOMPARE(walk({Qt::Key_Left}), QStringLiteral("#000002"));
    ColorTool::typeOne('1');
    QCOMPARE(tool.copiedText(), QStringLiteral("#000002"));

    ColorTool empty;
    ColorTool::press(Qt::Key_Right);
    QCOMPARE(empty.current(), QString());
}

void ColorModuleViewTest::deletedFavoritesComeBack()
{
    ColorTool tool({kOrange}, {hex("#000003"), hex("#000002"), hex("#000001")});
    const QList<SampledColor> before = tool.colors.favorites();
    // A recent colour stays, and so does a favorite without the focus.
    ColorTool::press(Qt::Key_Delete);
    tool.swatch(kRecent, kOrange)->setFocus();
    ColorTool::press(Qt::Key_Delete);
    QCOMPARE(tool.colors.recents().size() + tool.colors.favorites().size(), 4);
    ColorTool::press(Qt::Key_Down);
    ColorTool::press(Qt::Key_Right);
    ColorTool::press(Qt::Key_Delete);
    QCOMPARE(ColorTool::focusedColor(), QStringLiteral("#000003"));
    ColorTool::press(Qt::Key_Delete);
    QCOMPARE(ColorTool::focusedColor(), QStringLiteral("#000001"));
    ColorTool::press(Qt::Key_Delete);
    QVERIFY(!tool.shelf(kFavorites));
    QCOMPARE(QApplication::focusWidget(), tool.view.get());
    // What was on display stays there.
    QCOMPARE(tool.current(), QStringLiteral("#000002"));
    ColorTool::press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.colors.favorites(), QList<SampledColor>{hex("#000001")});
    ColorTool::press(Qt::Key_Z, Qt::ControlModifier);
    tool.view->headerActions().first()->setFocus();
    ColorTool::press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.colors.favorites(), before);
    QCOMPARE(tool.shelf(kFavorites)->colors(), before);
    ColorTool::press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(tool.colors.favorites(), before);
}

void ColorModuleViewTest::theTabKeyVisitsAll()
{
    ColorTool tool({kTeal, kOrange}, {kPlum, hex("#000001")});
    const auto visited = [&] {
        QStringList names;
        QSet<QWidget *> seen;
        for (ColorTool::press(Qt::Key_Tab); !seen.contains(QApplication::focusWidget());
             ColorTool::press(Qt::Key_Tab)) {
            seen.insert(QApplication::focusWidget());
            names.append(QApplication::focusWidget()->accessibleName());
        }
        return names;
    };
    const QStringList rest{QStringLiteral("Color #F7B267"),     QStringLiteral("Add to favorites"),
                           QStringLiteral("Pick Color"),        QStringLiteral("HEX #F7B267"),
                           QStringLiteral("RGB 247, 178, 103"), QStringLiteral("HSL 31°, 90%, 69%")};
    // Of each shelf one swatch.
    QCOMPARE(visited().mid(0, 8), rest + (QStringList{QStringLiteral("#F7B267"), QStringLiteral("#000001")}));
    // The one that had the focus last; what has come since stands in its place.
    tool.swatch(kFavorites, kPlum)->setFocus();
    tool.colors.record(kPlum);
    tool.view->setFocus();
    QCOMPARE(visited().mid(0, 8), rest + (QStringList{QStringLiteral("#F7B267"), QStringLiteral("#5B2A57")}));
}

void ColorModuleViewTest::longShelvesScroll()
{
    QList<SampledColor> favorites;
    for (int step = 0; step < 24; ++step)
        favorites.append({step / 255.0, 1, 1});
    ColorTool tool({kOrange}, favorites);
    SwatchShelf *shelf = tool.shelf(kFavorites);
    const auto left = [&](int index) {
        tool.settle();
        return tool.swatch(kFavorites, shelf->colors()[index])->mapTo(shelf, QPoint(Swatch::kOverhang, 0)).x();
    };
    // How much of the background the fade leaves of a swatch under it.
    const auto strength = [&](int x) { return tool.pixel({double(x), 272.0 + 11}).green(); };
    QCOMPARE(left(0), 14);
    QVERIFY(left(18) < 579 && left(19) > 574);
    QVERIFY(strength(18) == 255 && strength(565) > strength(572) && strength(572) > strength(577));
    ColorTool::press(Qt::Key_Down);
    ColorTool::press(Qt::Key_Down);
    ColorTool::press(Qt::Key_End);
    QCOMPARE(left(23), 574 - 22);
    QVERIFY(strength(570) == 255 && strength(20) > strength(15) && strength(15) > strength(11));
    ColorTool::press(Qt::Key_Home);
    QCOMPARE(left(0), 14);
    const auto turn = [&](const QPoint &angle) {
        const QPointF place(100, 30);
        QWheelEvent event(place, shelf->mapToGlobal(place), QPoint(), angle, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(shelf, &event);
    };
    turn({0, -120});
    const int once = left(0);
    QVERIFY(once < 14);
    turn({-120, 0});
    QVERIFY(left(0) < once);
    turn({0, 1200});
    QCOMPARE(left(0), 14);
    // A shelf that got shorter goes with it.
    ColorTool::press(Qt::Key_End);
    left(0);
    while (tool.colors.favorites().size() > 5)
        tool.colors.toggleFavorite(tool.colors.favorites().last());
    QCOMPARE(left(0), 14);
    QVERIFY(strength(15 + 4 * 30) == 255);
}

void ColorModuleViewTest::takesATypedColor()
{
    ColorTool tool;
    ColorTool::typeOne('#');
    QVERIFY(tool.field() && tool.field()->hasFocus());
    QVERIFY(!tool.button(QStringLiteral("Pick Color")));
    ColorTool::type("f80");
    QCOMPARE(tool.field()->text(), QStringLiteral("#f80"));
    QCOMPARE(tool.current(), QString());
    // It shows what it would be.
    QCOMPARE(tool.pixel(tool.field()->parentWidget()->geometry().topLeft() + QPointF(24, 18)).name(),
             QStringLiteral("#ff8800"));
    ColorTool::press(Qt::Key_Return);
    QCOMPARE(tool.current(), QStringLiteral("#FF8800"));
    QCOMPARE(tool.colors.recents(), QList<SampledColor>{hex("#FF8800")});
    QVERIFY(!tool.field());
    tool.resize();
    tool.settle();

    auto *row = tool.view->findChild<ColorValueRow *>();
    row->setFocus();
    ColorTool::type("hsl(30 100% 50");
    QVERIFY(!row->isVisible());
    QCOMPARE(tool.field()->parentWidget()->geometry(), QRect(232, 14, 342, 46));
    // Not one yet.
    ColorTool::press(Qt::Key_Return);
    tool.settle();
    QVERIFY(tool.field());
    ColorTool::type("%)");
    ColorTool::press(Qt::Key_Enter);
    QCOMPARE(tool.rows().last(), QStringLiteral("30°, 100%, 50%"));
    QVERIFY(row->isVisible() && row->hasFocus());
    // Digits are text in there, and what looks like a listed colour is that colour.
    const SampledColor picked{0.5, 0.25, 0.75};
    tool.colors.record(picked);
    ColorTool::type("rgb(128, 64, 191)");
    ColorTool::press(Qt::Key_Return);
    QCOMPARE(*tool.view->current(), picked);
    QCOMPARE(tool.colors.recents().size(), 3);
    // Looking elsewhere takes it, too.
    ColorTool::type("#00000F");
    tool.button(QStringLiteral("Copy HSL"))->setFocus(Qt::TabFocusReason);
    QCOMPARE(tool.current(), QStringLiteral("#00000F"));
    QVERIFY(!tool.field() && tool.button(QStringLiteral("Copy HSL"))->hasFocus());
}

void ColorModuleViewTest::leavesTheFieldWithoutOne()
{
    ColorTool tool({kOrange});
    const auto isLeft = [&](std::initializer_list<Qt::Key> keys) {
        ColorTool::typeOne('a');
        if (!tool.field() || tool.field()->text() != u"a")
            return false;
        for (const Qt::Key key : keys)
            ColorTool::press(key);
        return !tool.field() && QApplication::focusWidget() == tool.view.get() &&
               tool.current() == kOrange.hexString() && tool.colors.recents().size() == 1;
    };
    QVERIFY(isLeft({Qt::Key_Escape}));
    QVERIFY(isLeft({Qt::Key_Backspace}));
    QVERIFY(isLeft({Qt::Key_B, Qt::Key_C, Qt::Key_Escape}));
    ColorTool::type("zz");
    tool.button(QStringLiteral("Copy HSL"))->setFocus(Qt::TabFocusReason);
    QVERIFY(!tool.field());
    ColorTool::type("zz");
    tool.view->findChild<LargeSwatch *>()->setFocus(Qt::OtherFocusReason);
    QCOMPARE(tool.current(), kOrange.hexString());
    // Shortcuts are no text.
    ColorTool::press(Qt::Key_A, Qt::ControlModifier);
    ColorTool::press(Qt::Key_A, Qt::AltModifier);
    QVERIFY(!tool.field());
    // The loupe takes over.
    ColorTool::type("#123");
    tool.button(QStringLiteral("Pick Color"))->click();
    QVERIFY(!tool.field() && tool.colors.isSampling());
    QCOMPARE(tool.colors.recents().size(), 1);
}

void ColorModuleViewTest::takesAPastedColor()
{
    ColorTool tool;
    tool.paste(QStringLiteral("  rgb(29 95 124)\n"));
    QCOMPARE(tool.current(), kTeal.hexString());
    QVERIFY(!tool.field());
    QCOMPARE(tool.colors.recents(), QList<SampledColor>{kTeal});
    tool.paste(QStringLiteral("31°, 90%, 69%"));
    QCOMPARE(tool.rows().last(), QStringLiteral("31°, 90%, 69%"));
    const QString before = tool.current();

    // What is none can be mended.
    tool.paste(QStringLiteral("color:\n#5B2A57;") + QString(1 << 20, u' '));
    QVERIFY(tool.field());
    QCOMPARE(tool.field()->text(), QStringLiteral("color: #5B2A57;"));
    QCOMPARE(tool.current(), before);
    ColorTool::press(Qt::Key_Backspace);
    ColorTool::press(Qt::Key_Home);
    for (int i = 0; i < 7; ++i)
        ColorTool::press(Qt::Key_Delete);
    ColorTool::press(Qt::Key_Return);
    QCOMPARE(tool.current(), kPlum.hexString());

    // Into the field it is put where the caret is.
    ColorTool::typeOne('#');
    tool.paste(QStringLiteral("00000A"));
    QCOMPARE(tool.field()->text(), QStringLiteral("#00000A"));
    ColorTool::press(Qt::Key_Escape);

    tool.clipboard.copyPng("png");
    ColorTool::press(Qt::Key_V, Qt::ControlModifier);
    tool.clock.advance(1s);
    QVERIFY(!tool.field());
    // One that hangs keeps nobody waiting, and the view may be gone when it answers.
    FakeClipboardPort::Owner owner;
    owner.text = QStringLiteral("#000000");
    owner.readDelay = 500ms;
    tool.clipboard.copy(owner);
    ColorTool::press(Qt::Key_V, Qt::ControlModifier);
    tool.view.reset();
    tool.clock.advance(5s);
    QCOMPARE(tool.colors.recents().size(), 3);
}

void ColorModuleViewTest::paintsColorsBeyondTheirRange()
{
    // From a list put together by hand: what cannot be shown is shown as what is next to it, without a warning.
    ColorTool tool({{2, -1, 0.5}}, {{-3, 7, 1e300}});
    QCOMPARE(tool.pixel({25, 227}).name(), QStringLiteral("#ff0080"));
    QCOMPARE(tool.pixel({25, 283}).name(), QStringLiteral("#00ffff"));
    QCOMPARE(tool.pixel({100, 40}).name(), QStringLiteral("#ff0080"));
}

OSTRELLE_TEST(ColorModuleViewTest)
#include "ColorModuleViewTest.moc"
