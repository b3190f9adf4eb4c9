#include "platform/HotKeys.h"
#include "ContractDesktop.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <optional>

namespace ostrelle {

class HotKeysTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_desktop = ContractDesktop::make();
        m_pressed.clear();
        m_changed.clear();
        connect(&hotKeys(), &HotKeys::pressed, this, [this](int id, const ActivationToken &token) {
            m_pressed << id;
            m_token = token.value;
        });
        connect(&hotKeys(), &HotKeys::stateChanged, this, [this](int id) { m_changed << id; });
    }
    void cleanup() { m_desktop.reset(); }

    void hearsAHeldKeyOnceAndWhenItGoesDown()
    {
        hotKeys().set({m_openClipboard, m_pickColor});
        QCOMPARE(hotKeys().state(2), HotKeys::State::Granted);
        QCOMPARE(hotKeys().state(3), HotKeys::State::Granted);
        QVERIFY(!hotKeys().state(1));
        m_desktop->holdKeys(kV, kShiftSuper);
        QTRY_COMPARE(m_pressed, QList<int>{2});
        QVERIFY(!m_token.isEmpty());
        m_desktop->letKeysRepeat();
        m_desktop->releaseKeys();
        m_desktop->holdKeys(kC, kShiftSuper);
        m_desktop->releaseKeys();
        m_desktop->holdKeys(kV, kShiftSuper);
        m_desktop->releaseKeys();
        QTRY_COMPARE(m_pressed, QList<int>({2, 3, 2}));
    }

    void hearsOnlyTheWholeCombinationOfThePresentSet()
    {
        hotKeys().set({m_openClipboard});
        hotKeys().set({m_pickColor});
        QVERIFY(!hotKeys().state(2));
        m_desktop->holdKeys(kV, kShiftSuper);
        m_desktop->releaseKeys();
        m_desktop->holdKeys(kC, Qt::MetaModifier);
        m_desktop->releaseKeys();
        m_desktop->holdKeys(kC, kShiftSuper | Qt::ControlModifier);
        m_desktop->releaseKeys();
        m_desktop->holdKeys(kC, kShiftSuper);
        m_desktop->releaseKeys();
        QTRY_COMPARE(m_pressed, QList<int>{3});
        // The keys of one for another, in one step.
        HotKey clipboardOnC = m_openClipboard;
        clipboardOnC.keyCode = kC;
        hotKeys().set({clipboardOnC});
        QCOMPARE(hotKeys().state(2), HotKeys::State::Granted);
        m_desktop->holdKeys(kC, kShiftSuper);
        m_desktop->releaseKeys();
        QTRY_COMPARE(m_pressed, QList<int>({3, 2}));
        QVERIFY(m_changed.isEmpty());
    }

    void getsWhatAnotherProgramHeldWhenTheWindowManagerChanges()
    {
        m_desktop->takeKeysElsewhere(kV, kShiftSuper);
        hotKeys().set({m_openClipboard, m_pickColor});
        QCOMPARE(hotKeys().state(2), HotKeys::State::Refused);
        QCOMPARE(hotKeys().state(3), HotKeys::State::Granted);
        m_desktop->letKeysGoElsewhere();
        m_desktop->changeWindowManager();
        QTRY_COMPARE(m_changed, QList<int>{2});
        QCOMPARE(hotKeys().state(2), HotKeys::State::Granted);
        m_desktop->holdKeys(kV, kShiftSuper);
        m_desktop->releaseKeys();
        QTRY_COMPARE(m_pressed, QList<int>{2});
    }

    void asksAgainForWhatWasRefusedWhenItIsSetAgain()
    {
        m_desktop->takeKeysElsewhere(kV, kShiftSuper);
        hotKeys().set({m_openClipboard});
        QCOMPARE(hotKeys().state(2), HotKeys::State::Refused);
        m_desktop->letKeysGoElsewhere();
        hotKeys().set({m_openClipboard, m_pickColor});
        QCOMPARE(hotKeys().state(2), HotKeys::State::Granted);
    }

private:
    static constexpr quint32 kC = 8;
    static constexpr quint32 kV = 9;
    static constexpr Qt::KeyboardModifiers kShiftSuper = Qt::ShiftModifier | Qt::MetaModifier;

    HotKeys &hotKeys() { return m_desktop->hotKeys(); }

    const HotKey m_openClipboard{2, kV, kShiftSuper, QStringLiteral("openClipboard"), QStringLiteral("Open Clipboard")};
    const HotKey m_pickColor{3, kC, kShiftSuper, QStringLiteral("pickColor"), QStringLiteral("Pick Color")};
    std::unique_ptr<ContractDesktop> m_desktop;
    QList<int> m_pressed;
    QList<int> m_changed;
    QString m_token;
};

} // namespace ostrelle

using ostrelle::HotKeysTest;
OSTRELLE_TEST(HotKeysTest)

#include "HotKeysTest.moc"
