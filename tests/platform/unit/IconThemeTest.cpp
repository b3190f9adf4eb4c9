#include "platform/freedesktop/IconTheme.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ostrelle;

class IconThemeTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void takesTheSizeThatSuits_data();
    void takesTheSizeThatSuits();
    void nearerThemesComeFirst();
    void namesFromOutsideLeadNowhere();

private:
    QString file(const QString &path, const QByteArray &content = {});
    QString found(const IconTheme &theme, const QStringList &names, int size = 48, int scale = 1);

    QTemporaryDir m_folder;
};

/// Below the base folder "one" or "two".
QString IconThemeTest::file(const QString &path, const QByteArray &content)
{
    const QString whole = m_folder.filePath(path);
    QDir().mkpath(QFileInfo(whole).path());
    QFile written(whole);
    if (written.open(QIODevice::WriteOnly))
        written.write(content);
    return whole;
}

QString IconThemeTest::found(const IconTheme &theme, const QStringList &names, int size, int scale)
{
    return theme.find(names, size, scale).mid(m_folder.path().size() + 1);
}

void IconThemeTest::takesTheSizeThatSuits_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("scale");
    QTest::addColumn<QString>("folder");
    QTest::newRow("the very size") << 16 << 1 << "16";
    QTest::newRow("the very size at scale 2") << 16 << 2 << "16@2";
    QTest::newRow("as many pixels at another scale") << 32 << 1 << "16@2";
    QTest::newRow("within the threshold") << 50 << 1 << "48";
    QTest::newRow("a little smaller is sharper") << 18 << 1 << "16";
    QTest::newRow("much smaller is not") << 40 << 1 << "48";
    QTest::newRow("the range of a drawing") << 200 << 1 << "drawn";
    QTest::newRow("beyond all") << 600 << 1 << "drawn";
}

void IconThemeTest::takesTheSizeThatSuits()
{
    QFETCH(int, size);
    QFETCH(int, scale);
    file(QStringLiteral("one/Sizes/index.theme"), "[Icon Theme]\nName=Sizes\n"
                                                  "Directories=16,48,drawn,unlisted\nScaledDirectories=16@2\n"
                                                  "[16]\nSize=16\nType=Fixed\n[16@2]\nSize=16\nScale=2\nType=Fixed\n"
                                                  "[48]\nSize=48\n"
                                                  "[drawn]\nSize=128\nMinSize=96\nMaxSize=512\nType=Scalable\n");
    for (const char *folder : {"16", "16@2", "48", "unlisted"})
        file(QStringLiteral("one/Sizes/%1/paper.png").arg(QLatin1StringView(folder)));
    file(QStringLiteral("one/Sizes/drawn/paper.svg"));
    const IconTheme theme(QStringLiteral("Sizes"), {}, {m_folder.filePath(QStringLiteral("one"))});
    QTEST(found(theme, {QStringLiteral("paper")}, size, scale).section(u'/', 2, 2), "folder");
}

void IconThemeTest::nearerThemesComeFirst()
{
    const QByteArray folder = "Directories=48\n[48]\nSize=48\n";
    // Of one theme, in two places; the index of the first counts.
    file(QStringLiteral("one/Mine/index.theme"), "[Icon Theme]\nInherits=Parent,Mine\n" + folder);
    file(QStringLiteral("two/Mine/48/here.png"));
    file(QStringLiteral("two/Mine/48/general.png"));
    file(QStringLiteral("two/Parent/index.theme"), "[Icon Theme]\nInherits=hicolor,Mine\n" + folder);
    file(QStringLiteral("two/Parent/48/special.png"));
    file(QStringLiteral("two/Parent/48/inherited.png"));
    file(QStringLiteral("two/Fallback/index.theme"), "[Icon Theme]\n" + folder);
    file(QStringLiteral("two/Fallback/48/last.png"));
    file(QStringLiteral("two/hicolor/index.theme"), "[Icon Theme]\n" + folder);
    file(QStringLiteral("two/hicolor/48/last.png"));
    file(QStringLiteral("two/hicolor/48/hicolor only.png"));
    const IconTheme theme(QStringLiteral("Mine"), QStringLiteral("Fallback"),
                          {m_folder.filePath(QStringLiteral("one")), m_folder.filePath(QStringLiteral("two"))});
    QCOMPARE(found(theme, {QStringLiteral("here")}), QStringLiteral("two/Mine/48/here.png"));
    QCOMPARE(found(theme, {QStringLiteral("inherited")}), QStringLiteral("two/Parent/48/inherited.png"));
    QCOMPARE(found(theme, {QStringLiteral("special"), QStringLiteral("general")}),
             QStringLiteral("two/Mine/48/general.png"));
    QCOMPARE(found(theme, {QStringLiteral("last")}), QStringLiteral("two/Fallback/48/last.png"));
    QCOMPARE(found(theme, {QStringLiteral("hicolor only")}), QStringLiteral("two/hicolor/48/hicolor only.png"));
    QCOMPARE(found(theme, {QStringLiteral("nowhere")}), QString());
}

void IconThemeTest::namesFromOutsideLeadNowhere()
{
    file(QStringLiteral("one/outside/index.theme"), "[Icon Theme]\nDirectories=48\n[48]\nSize=48\n");
    file(QStringLiteral("one/outside/48/paper.png"));
    const QStringList folders{m_folder.filePath(QStringLiteral("one/themes"))};
    for (const char *name : {"../outside", "..", "", "missing"})
        QCOMPARE(found(IconTheme(QString::fromLatin1(name), {}, folders), {QStringLiteral("paper")}), QString());
}

OSTRELLE_TEST(IconThemeTest)
#include "IconThemeTest.moc"
