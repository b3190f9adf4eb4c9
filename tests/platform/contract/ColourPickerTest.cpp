#include "platform/ColourPicker.h"
#include "ContractDesktop.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <cmath>
#include <vector>

namespace ostrelle {

class ColourPickerTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_gathered.clear();
        m_ended.clear();
        m_context = std::make_unique<QObject>();
        m_desktop = ContractDesktop::make();
        m_desktop->showColours({m_orange, m_teal});
        m_desktop->pointAt(m_orange);
    }
    void cleanup()
    {
        m_context.reset();
        m_desktop.reset();
    }

    void picksTheColourUnderThePointerOnce()
    {
        open();
        m_desktop->pointAt(m_teal);
        m_desktop->pressButton();
        m_desktop->releaseButton();
        QTRY_COMPARE(m_ended.size(), 1);
        QVERIFY(isClose(m_ended.front(), m_teal));
        QTRY_VERIFY(!m_desktop->showsLoupe());
        QVERIFY(m_gathered.empty());
    }

    void opensOneAtATime()
    {
        open();
        QVERIFY(!m_desktop->colourPicker().pick(m_context.get(), handlers()));
        m_desktop->pressKey(Qt::Key_Escape);
        QTRY_COMPARE(m_ended.size(), 1);
        QVERIFY(!m_ended.front());
        open();
        m_desktop->pressButton();
        m_desktop->releaseButton();
        QTRY_COMPARE(m_ended.size(), 2);
        QVERIFY(isClose(m_ended.back(), m_orange));
    }

    void gathersWhileShiftIsHeldAndEndsWithTheLast()
    {
        open();
        m_desktop->clickWithShift();
        QTRY_COMPARE(m_gathered.size(), 1);
        m_desktop->pointAt(m_teal);
        m_desktop->clickWithShift();
        QTRY_COMPARE(m_gathered.size(), 2);
        QVERIFY(isClose(m_gathered.front(), m_orange) && isClose(m_gathered.back(), m_teal));
        QTRY_VERIFY(m_desktop->showsLoupe());
        m_desktop->pressKey(Qt::Key_Escape);
        QTRY_COMPARE(m_ended.size(), 1);
        QVERIFY(isClose(m_ended.front(), m_teal));
    }

    void opensAnotherFromInsideTheAnswer()
    {
        bool isOpened = false;
        ColourPicker &picker = m_desktop->colourPicker();
        const auto openAnother = [&](auto) { isOpened = picker.pick(m_context.get(), handlers()); };
        QVERIFY(picker.pick(m_context.get(), {.gathered = {}, .finished = openAnother}));
        QTRY_VERIFY(m_desktop->showsLoupe());
        m_desktop->pressKey(Qt::Key_Escape);
        QTRY_VERIFY(isOpened && m_desktop->showsLoupe());
    }

    void endsSilentlyWithItsContext()
    {
        open();
        m_context.reset();
        QTRY_VERIFY(!m_desktop->showsLoupe());
        m_context = std::make_unique<QObject>();
        open();
        m_desktop->pressKey(Qt::Key_Escape);
        QTRY_COMPARE(m_ended.size(), 1);
    }

private:
    ColourPicker::Handlers handlers()
    {
        return {.gathered = [this](const PickedColour &colour) { m_gathered.emplace_back(colour); },
                .finished = [this](std::optional<PickedColour> colour) { m_ended.push_back(colour); }};
    }
    void open()
    {
        QVERIFY(m_desktop->colourPicker().pick(m_context.get(), handlers()));
        QTRY_VERIFY(m_desktop->showsLoupe());
    }
    static bool isClose(const std::optional<PickedColour> &colour, const QColor &expected)
    {
        const auto isSame = [](double one, double other) { return std::abs(one - other) < 1e-4; };
        return colour && isSame(colour->red, expected.redF()) && isSame(colour->green, expected.greenF()) &&
               isSame(colour->blue, expected.blueF());
    }

    const QColor m_orange{247, 178, 103};
    const QColor m_teal{17, 129, 131};
    std::vector<std::optional<PickedColour>> m_gathered;
    std::vector<std::optional<PickedColour>> m_ended;
    std::unique_ptr<QObject> m_context;
    std::unique_ptr<ContractDesktop> m_desktop;
};

} // namespace ostrelle

using ostrelle::ColourPickerTest;
OSTRELLE_TEST(ColourPickerTest)

#include "ColourPickerTest.moc"
