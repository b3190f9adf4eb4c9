#include "files/FilePicker.h"
#include "FilesFixture.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <optional>

using namespace ostrelle;
using namespace std::chrono_literals;

class FilePickerTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void staysOpenForAMomentAfterwards();
    void anotherChoiceTakesThePlaceOfAnOpenOne();
    void forgetsWhoIsGone();

private:
    void pick(QObject *owner, FilePicker::AfterCancel afterCancel = FilePicker::AfterCancel::CollapseLater);
    bool closesOnAPressOutside();

    std::unique_ptr<FilesFixture> m_fixture;
    QList<QStringList> m_answers;
};

void FilePickerTest::init()
{
    TestBase::init();
    m_answers.clear();
    m_fixture = std::make_unique<FilesFixture>();
    m_fixture->platform.screens().arrange({FakeScreens::make(QStringLiteral("one"), QRectF(0, 0, 1920, 1080))});
    m_fixture->platform.pointerNear().moveToScreen(QStringLiteral("one"));
    m_fixture->controller.start(m_fixture->panel);
    m_fixture->controller.present(KestroModule::ImageInfo, NotchController::Focus::Take,
                                  NotchController::Opening::Explicit);
}

void FilePickerTest::pick(QObject *owner, FilePicker::AfterCancel afterCancel)
{
    FileChoice choice;
    choice.mimeTypes = {QStringLiteral("image/*")};
    m_fixture->picker.pick(choice, owner, afterCancel, [this](const QStringList &paths) { m_answers.append(paths); });
}

bool FilePickerTest::closesOnAPressOutside()
{
    m_fixture->platform.outsideActivity().press();
    return m_fixture->viewModel.phase() != Phase::Expanded;
}

void FilePickerTest::staysOpenForAMomentAfterwards()
{
    for (const QStringList &paths : {QStringList(), QStringList(QStringLiteral("/a/b.png"))}) {
        pick(this);
        const int raised = m_fixture->chooser.raiseCount();
        pick(this); // one is open already, perhaps behind something
        QCOMPARE(m_fixture->chooser.raiseCount(), raised + 1);
        QCOMPARE(m_fixture->foreground.depth(), 1);
        QVERIFY(!closesOnAPressOutside());
        m_fixture->chooser.close(paths);
        QCOMPARE(m_answers.size(), 1);
        QCOMPARE(m_answers.takeLast(), paths);
        QCOMPARE(m_fixture->foreground.depth(), 0);
        m_fixture->clock.advance(399ms);
        QVERIFY(!closesOnAPressOutside());
    }
    m_fixture->clock.advance(1ms);
    QVERIFY(closesOnAPressOutside());
}

void FilePickerTest::anotherChoiceTakesThePlaceOfAnOpenOne()
{
    QObject other;
    pick(&other, FilePicker::AfterCancel::CollapseAtOnce);
    pick(this);
    QCOMPARE(m_fixture->foreground.depth(), 2);
    m_fixture->chooser.close({QStringLiteral("/a/b.png")});
    QCOMPARE(m_answers, (QList<QStringList>{{}, {QStringLiteral("/a/b.png")}}));
    QCOMPARE(m_fixture->foreground.depth(), 0);
    m_fixture->clock.advance(399ms);
    QVERIFY(!closesOnAPressOutside());
    m_fixture->clock.advance(1ms);
    QVERIFY(closesOnAPressOutside());
}

void FilePickerTest::forgetsWhoIsGone()
{
    auto owner = std::make_unique<QObject>();
    pick(owner.get());
    owner.reset();
    m_fixture->chooser.close({QStringLiteral("/a/b.png")});
    QVERIFY(m_answers.isEmpty());
    QCOMPARE(m_fixture->foreground.depth(), 0);
    m_fixture->clock.advance(400ms);
    QVERIFY(closesOnAPressOutside());
}

OSTRELLE_TEST(FilePickerTest)
#include "FilePickerTest.moc"
