#include "command/CommandLine.h"
#include "command/Help.h"
#include "command/Output.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

using namespace ostrelle;

class CommandLineTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void findsCommandsWithTheirArguments_data();
    void findsCommandsWithTheirArguments();
    void optionsTakeTheirValues();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helpNamesEveryCommand();
    void printedTextCannotSteerATerminal();
};

void CommandLineTest::findsCommandsWithTheirArguments_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("json");
    QTest::addColumn<bool>("isExplicit");
    QTest::newRow("nothing opens") << ""
                                   << "open" << QStringList() << false << false;
    QTest::newRow("tool") << "open clipboard"
                          << "open" << QStringList{QStringLiteral("clipboard")} << false << true;
    QTest::newRow("group") << "clipboard pin 3"
                           << "clipboard pin" << QStringList{QStringLiteral("3")} << false << true;
    QTest::newRow("json") << "clipboard list --json"
                          << "clipboard list" << QStringList() << true << true;
    QTest::newRow("negative value") << "settings set clipboard.limit -1"
                                    << "settings set"
                                    << QStringList{QStringLiteral("clipboard.limit"), QStringLiteral("-1")} << false
                                    << true;
    QTest::newRow("dashes end options") << "settings set updates.skippedVersion -- --odd"
                                        << "settings set"
                                        << QStringList{QStringLiteral("updates.skippedVersion"),
                                                       QStringLiteral("--odd")}
                                        << false << true;
}

void CommandLineTest::findsCommandsWithTheirArguments()
{
    QFETCH(QString, line);
    QFETCH(QString, command);
    const auto parsed = parseCommandLine(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    const auto *invocation = std::get_if<Invocation>(&parsed);
    QVERIFY(invocation);
    QCOMPARE(invocation->command->name, command);
    QTEST(invocation->arguments, "arguments");
    QTEST(invocation->json, "json");
    QTEST(invocation->isExplicit, "isExplicit");
}

void CommandLineTest::optionsTakeTheirValues()
{
    const auto parsed =
        parseCommandLine(QStringLiteral("thumbnail --size 64 photo.jpg --output out.png").split(QLatin1Char(' ')));
    const auto *invocation = std::get_if<Invocation>(&parsed);
    QVERIFY(invocation);
    QCOMPARE(invocation->arguments, QStringList{QStringLiteral("photo.jpg")});
    QCOMPARE(invocation->options.value(QStringLiteral("--size")), QStringLiteral("64"));
    QCOMPARE(invocation->options.value(QStringLiteral("--output")), QStringLiteral("out.png"));

    const auto flags = parseCommandLine(QStringLiteral("inspect -0 - --no-tempo --jobs 3").split(QLatin1Char(' ')));
    invocation = std::get_if<Invocation>(&flags);
    QVERIFY(invocation);
    QCOMPARE(invocation->arguments, QStringList{QStringLiteral("-")});
    QVERIFY(invocation->options.contains(QStringLiteral("-0")));
    QVERIFY(invocation->options.contains(QStringLiteral("--no-tempo")));
    QVERIFY(!invocation->options.contains(QStringLiteral("--recursive")));
    QCOMPARE(invocation->options.value(QStringLiteral("--jobs")), QStringLiteral("3"));
}

void CommandLineTest::refusesWrongUsage_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("unknown command") << "fly";
    QTest::newRow("option without a command") << "--json";
    QTest::newRow("unknown in group") << "clipboard fly";
    QTest::newRow("group alone") << "clipboard";
    QTest::newRow("missing argument") << "clipboard pin";
    QTest::newRow("too many") << "close now";
    QTest::newRow("unknown option") << "status --yaml";
    QTest::newRow("json where there is none") << "close --json";
    QTest::newRow("missing option") << "thumbnail photo.jpg --size 64";
    QTest::newRow("option without its value") << "thumbnail photo.jpg --output";
    QTest::newRow("flag with a value") << "inspect a.wav --recursive=yes";
}

void CommandLineTest::refusesWrongUsage()
{
    QFETCH(QString, line);
    const auto parsed = parseCommandLine(line.split(QLatin1Char(' ')));
    const auto *problem = std::get_if<UsageProblem>(&parsed);
    QVERIFY(problem);
    QVERIFY(!problem->message.isEmpty() && !problem->message.contains(QLatin1Char('\n')));
}

void CommandLineTest::helpNamesEveryCommand()
{
    for (const CommandSpec &command : allCommands()) {
        QVERIFY(helpText({}).contains(command.name));
        QVERIFY(helpText(command.name).contains(command.summary));
        QVERIFY(command.run);
    }
    QVERIFY(std::get_if<HelpRequest>(&static_cast<const ParsedCommandLine &>(
        parseCommandLine({QStringLiteral("settings"), QStringLiteral("--help")}))));
    QVERIFY(!helpText(QStringLiteral("settings")).contains(QStringLiteral("clipboard pin")));
}

void CommandLineTest::printedTextCannotSteerATerminal()
{
    const QString printed = printable(QStringLiteral("a\x1b[2Jb\nc\u202Ed"));
    QCOMPARE(printed, QStringLiteral("a [2Jb c d"));
}

OSTRELLE_TEST(CommandLineTest)
#include "CommandLineTest.moc"
