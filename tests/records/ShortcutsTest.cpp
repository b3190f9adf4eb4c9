#include "foundation/DefaultsDatabase.h"
#include "records/KeyComboText.h"
#include "records/KeyNames.h"
#include "records/StoredShortcuts.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTemporaryDir>
#include <QTest>

using namespace ostrelle;

namespace {

/// A board with a keypad, a key that prints a plus and one that prints more than one letter.
const KeyNames kNames(QMap<quint32, QString>{{0, QStringLiteral("A")},
                                             {8, QStringLiteral("C")},
                                             {9, QStringLiteral("V")},
                                             {18, QStringLiteral("1")},
                                             {27, QStringLiteral("SS")},
                                             {30, QStringLiteral("+")},
                                             {83, QStringLiteral("1")}});

constexpr quint32 kAll = KeyCombo::kControl | KeyCombo::kOption | KeyCombo::kShift | KeyCombo::kCommand;

} // namespace

class ShortcutsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void showsModifiersInOneOrder()
    {
        QCOMPARE(display({0, kAll}, kNames), QStringLiteral("⌃⌥⇧⌘A"));
        QCOMPARE(display({49, KeyCombo::kCommand}, kNames), QStringLiteral("⌘Space"));
        QCOMPARE(display({123, KeyCombo::kControl}, kNames), QStringLiteral("⌃←"));
        QCOMPARE(display({47, KeyCombo::kOption}, kNames), QStringLiteral("⌥?"));
    }

    void keepsWhatIsStored()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("defaults.json"));
        const KeyCombo large{0xfffffff0, 0xffffffff};
        {
            DefaultsDatabase database(path);
            QCOMPARE(loadKeyCombos(database), (KeyCombos{{ShortcutAction::OpenClipboard, {9, 0x0300}},
                                                         {ShortcutAction::PickColor, {8, 0x0300}}}));
            storeKeyCombo(database, ShortcutAction::ToggleNotch, large);
            storeKeyCombo(database, ShortcutAction::OpenClipboard, std::nullopt);
            QVERIFY(database.flush());
        }
        const DefaultsDatabase database(path);
        // Removed stays removed: the stored null wins over the default.
        QCOMPARE(loadKeyCombos(database),
                 (KeyCombos{{ShortcutAction::ToggleNotch, large}, {ShortcutAction::PickColor, {8, 0x0300}}}));
        QCOMPARE(database.data(QStringLiteral("shortcut.openClipboard")), QByteArray("null"));
    }

    void takesWhatCannotBeDecodedForNotSet_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("garbage") << QByteArray("\xff{");
        QTest::newRow("member missing") << QByteArray(R"({"keyCode":9})");
        QTest::newRow("text") << QByteArray(R"({"keyCode":"9","carbonModifiers":768})");
        QTest::newRow("negative") << QByteArray(R"({"keyCode":-1,"carbonModifiers":768})");
        QTest::newRow("fraction") << QByteArray(R"({"keyCode":9.5,"carbonModifiers":768})");
        QTest::newRow("too large") << QByteArray(R"({"keyCode":4294967296,"carbonModifiers":768})");
    }

    void takesWhatCannotBeDecodedForNotSet()
    {
        QFETCH(const QByteArray, stored);
        const QTemporaryDir folder;
        DefaultsDatabase database(folder.filePath(QStringLiteral("defaults.json")));
        database.setData(QStringLiteral("shortcut.openClipboard"), stored);
        QVERIFY(!loadKeyCombos(database).contains(ShortcutAction::OpenClipboard));
    }

    void readsBackWhatItWrites()
    {
        for (quint32 code = 0; code < 128; ++code) {
            if (kNames.nameOf(code) == u"?")
                continue;
            for (quint32 mask = 0; mask < 16; ++mask) {
                const KeyCombo combo{code, (mask & 1 ? KeyCombo::kControl : 0) | (mask & 2 ? KeyCombo::kOption : 0) |
                                               (mask & 4 ? KeyCombo::kShift : 0) | (mask & 8 ? KeyCombo::kCommand : 0)};
                const QString text = keyComboText(combo, kNames);
                const auto read = keyComboFromText(text, kNames, ShortcutAction::ToggleNotch, {});
                QVERIFY2(std::holds_alternative<KeyCombo>(read) == (mask != 0), qPrintable(text));
                if (mask) // the keypad's digit is written like the other one, which comes first
                    QCOMPARE(std::get<KeyCombo>(read), (KeyCombo{code == 83 ? 18 : code, combo.carbonModifiers}));
            }
        }
    }

    void understandsWhatIsTyped_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<KeyCombo>>("combo");
        const auto row = [](const char *text, std::optional<KeyCombo> combo) {
            QTest::newRow(text) << QString::fromUtf8(text) << combo;
        };
        row("shift + SUPER + v", KeyCombo{9, 0x0300});
        row("Command+Option+Return", KeyCombo{36, 0x0900});
        row("Ctrl++", KeyCombo{30, 0x1000});
        row("Super+ss", KeyCombo{27, 0x0100});
        row("Alt+F20", KeyCombo{90, 0x0800});
        row("v", std::nullopt);
        row("+", std::nullopt);
        row("", std::nullopt);
        row("Super+", std::nullopt);
        row("Super+Shift", std::nullopt);
        row("Hyper+V", std::nullopt);
        row("Super+?", std::nullopt);
        row("V+Super", std::nullopt);
    }

    void understandsWhatIsTyped()
    {
        QFETCH(const QString, text);
        QFETCH(const std::optional<KeyCombo>, combo);
        const auto read = keyComboFromText(text, kNames, ShortcutAction::ToggleNotch, {});
        QCOMPARE(std::holds_alternative<KeyCombo>(read), combo.has_value());
        if (combo)
            QCOMPARE(std::get<KeyCombo>(read), *combo);
        else
            QCOMPARE(std::get<KeyComboProblem>(read).kind, KeyComboProblem::Kind::Meaningless);
    }

    void refusesWhatAnotherActionHas()
    {
        const KeyCombos combos{{ShortcutAction::OpenClipboard, {9, 0x0300}}};
        const auto typed = [&](ShortcutAction action) {
            return keyComboFromText(QStringLiteral("Super+Shift+V"), kNames, action, combos);
        };
        QVERIFY(std::holds_alternative<KeyCombo>(typed(ShortcutAction::OpenClipboard)));
        const KeyComboProblem problem = std::get<KeyComboProblem>(typed(ShortcutAction::PickColor));
        QCOMPARE(problem.kind, KeyComboProblem::Kind::Taken);
        QCOMPARE(problem.message, QStringLiteral("Shift+Super+V is used by Open Clipboard (openClipboard)"));
        QVERIFY(!conflict(combos, {9, 0x0100}, ShortcutAction::PickColor));
    }
};

OSTRELLE_TEST(ShortcutsTest)

#include "ShortcutsTest.moc"
