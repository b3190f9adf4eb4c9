#include "windows/PrivacySection.h"
#include "SettingsFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"
#include "windows/controls/PlainEditor.h"

#include <QScrollArea>
#include <QTextCursor>

#include <functional>

using namespace ostrelle;

namespace {

QString latin(const char *text)
{
    return QString::fromUtf8(text);
}

void sendHeldKey(QWidget &widget, Qt::Key key)
{
    QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(&widget, &repeated);
}

void sendSecondClick(QWidget &widget)
{
    const QPointF middle = QRectF(widget.rect()).center();
    for (const QEvent::Type type : {QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, middle, widget.mapToGlobal(middle), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }
}

} // namespace

class PrivacySectionTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void clearingAsksFirst_data();
    void clearingAsksFirst();
    void nothingElseIsReachedWhileItAsks();
    void identifiersAreWhatStandsOnTheLines_data();
    void identifiersAreWhatStandsOnTheLines();
    void typingStoresAtOnceAndKeepsWhatIsTyped();
    void theEditorCopiesAndPastesByTheProgramsOwnWay();
    void recordingFollowsTheSwitch();
    void whatKeysReachIsSeenWhole();
};

void PrivacySectionTest::clearingAsksFirst_data()
{
    using Answer = std::function<void(SettingsFixture &)>;
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<int>("left");
    QTest::newRow("Return clears") << Answer([](SettingsFixture &stage) { stage.press(Qt::Key_Return); }) << 0;
    QTest::newRow("Clear") << Answer([](SettingsFixture &stage) { stage.click(latin("Clear")); }) << 0;
    QTest::newRow("Escape") << Answer([](SettingsFixture &stage) { stage.press(Qt::Key_Escape); }) << 2;
    QTest::newRow("Cancel") << Answer([](SettingsFixture &stage) { stage.click(latin("Cancel")); }) << 2;
    QTest::newRow("the other button by keys") << Answer([](SettingsFixture &stage) {
        stage.press(Qt::Key_Tab);
        stage.press(Qt::Key_Return);
    }) << 2;
    QTest::newRow("no rest of a double click") << Answer([](SettingsFixture &stage) {
        sendSecondClick(stage.button(latin("Clear")));
        stage.press(Qt::Key_Escape);
    }) << 2;
    QTest::newRow("no key still held") << Answer([](SettingsFixture &stage) {
        sendHeldKey(stage.button(latin("Clear")), Qt::Key_Return);
        stage.press(Qt::Key_Escape);
    }) << 2;
}

void PrivacySectionTest::clearingAsksFirst()
{
    QFETCH(const std::function<void(SettingsFixture &)>, answer);
    QFETCH(const int, left);
    SettingsFixture stage;
    stage.history.start();
    for (const char *text : {"one", "two"}) {
        stage.clipboard.copyText(latin(text));
        stage.settle();
    }
    stage.history.togglePin(stage.history.items().first().id);
    stage.open(SettingsSection::Privacy);
    stage.click(latin("Clear history now"));
    QVERIFY(stage.find<QWidget>(latin("Clear clipboard history?")));
    QCOMPARE(stage.history.items().size(), 2);
    answer(stage);
    stage.settle();
    QCOMPARE(stage.history.items().size(), left);
    QVERIFY(!stage.find<QWidget>(latin("Clear clipboard history?")));
    QVERIFY(stage.controllerOfWindow.window());
}

void PrivacySectionTest::nothingElseIsReachedWhileItAsks()
{
    SettingsFixture stage;
    QWidget &window = stage.open(SettingsSection::Privacy);
    QAbstractButton &row = stage.button(latin("Clear history now"));
    row.setFocus();
    stage.click(latin("Clear history now"));
    for (int i = 0; i < 5; ++i) {
        stage.press(Qt::Key_Tab);
        QVERIFY(window.focusWidget() == &stage.button(latin("Clear")) ||
                window.focusWidget() == &stage.button(latin("Cancel")));
    }
    stage.press(Qt::Key_W, Qt::ControlModifier);
    QVERIFY(stage.controllerOfWindow.window());
    const QPoint onSwitch = stage.button(latin("Skip concealed copies")).mapTo(&window, QPoint(5, 5));
    QVERIFY(window.childAt(onSwitch) != &stage.button(latin("Skip concealed copies")));
    stage.press(Qt::Key_Escape);
    QCOMPARE(window.focusWidget(), &row);
}

void PrivacySectionTest::identifiersAreWhatStandsOnTheLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("identifiers");
    QTest::newRow("empty") << "" << QStringList();
    QTest::newRow("spaces and an empty line") << "  com.example.one \t\n\n" << QStringList{latin("com.example.one")};
    QTest::newRow("blank lines") << "a\n \t \nb\n" << QStringList{latin("a"), latin("b")};
    QTest::newRow("inner spaces stay") << "a b\na" << QStringList{latin("a b"), latin("a")};
}

void PrivacySectionTest::identifiersAreWhatStandsOnTheLines()
{
    QFETCH(const QString, text);
    QTEST(PrivacySection::identifiersIn(text), "identifiers");
}

void PrivacySectionTest::typingStoresAtOnceAndKeepsWhatIsTyped()
{
    SettingsFixture stage;
    stage.settings.setExcludedApps({latin("com.example.one")});
    stage.open(SettingsSection::Privacy);
    auto *editor = stage.find<PlainEditor>(latin("Excluded Apps"));
    QVERIFY(editor != nullptr);
    QCOMPARE(editor->toPlainText(), latin("com.example.one"));
    editor->setFocus();
    editor->moveCursor(QTextCursor::End);
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::keyClicks(editor, latin("  two "));
    QCOMPARE(stage.settings.excludedApps(), QStringList({latin("com.example.one"), latin("two")}));
    QCOMPARE(editor->toPlainText(), latin("com.example.one\n  two "));
    stage.settings.setExcludedApps({latin("three")});
    QCOMPARE(editor->toPlainText(), latin("three"));
    QCOMPARE(stage.settings.excludedApps(), QStringList(latin("three")));
}

void PrivacySectionTest::theEditorCopiesAndPastesByTheProgramsOwnWay()
{
    SettingsFixture stage;
    stage.open(SettingsSection::Privacy);
    auto *editor = stage.find<PlainEditor>(latin("Excluded Apps"));
    editor->setFocus();
    editor->selectAll();
    const qint64 before = stage.clipboard.changeCount();
    QTest::keyClick(editor, Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(stage.clipboard.changeCount(), before + 1);
    QVERIFY(stage.settings.excludedApps().isEmpty());
    QCOMPARE(std::get<QString>(*stage.clipboard.offer()).split(u'\n').size(), 4);

    stage.clipboard.copyText(latin("com.example.pasted\n"));
    QTest::keyClick(editor, Qt::Key_V, Qt::ControlModifier);
    stage.settle();
    QCOMPARE(stage.settings.excludedApps(), QStringList(latin("com.example.pasted")));

    // A press on what is selected ends the selection: the toolkit would begin to drag it.
    editor->selectAll();
    QTest::mousePress(editor->viewport(), Qt::LeftButton, {}, editor->cursorRect().center() - QPoint(0, 17));
    QVERIFY(!editor->textCursor().hasSelection());
    QTest::mouseRelease(editor->viewport(), Qt::LeftButton);
}

void PrivacySectionTest::recordingFollowsTheSwitch()
{
    SettingsFixture stage;
    stage.history.start();
    stage.open(SettingsSection::Privacy);
    stage.click(latin("Remember clipboard history"));
    stage.clipboard.copyText(latin("unseen"));
    stage.settle();
    QVERIFY(stage.history.items().isEmpty());
    stage.click(latin("Remember clipboard history"));
    stage.clipboard.copyText(latin("seen"));
    stage.settle();
    QCOMPARE(stage.history.items().size(), 1);
}

void PrivacySectionTest::whatKeysReachIsSeenWhole()
{
    SettingsFixture stage;
    QWidget &window = stage.open(SettingsSection::Privacy);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto &page = *window.findChild<QScrollArea *>();
    const auto isSeenWhole = [&page, &window] {
        const QWidget &focused = *window.focusWidget();
        const QRect place(focused.mapTo(page.viewport(), QPoint()), focused.size());
        return page.viewport()->rect().contains(place);
    };
    stage.press(Qt::Key_Backtab); // from the sidebar to the page's end
    QCOMPARE(window.focusWidget(), stage.find<PlainEditor>(latin("Excluded Apps")));
    QVERIFY(isSeenWhole());
    stage.press(Qt::Key_Tab);
    stage.press(Qt::Key_Tab);
    QCOMPARE(window.focusWidget(), &stage.button(latin("Remember clipboard history")));
    QVERIFY(isSeenWhole());
}

OSTRELLE_TEST(PrivacySectionTest)
#include "PrivacySectionTest.moc"
