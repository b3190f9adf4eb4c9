#include "platform/freedesktop/PortalHotKeys.h"
#include "ShortcutPortal.h"
#include "support/FakeKeyboardLayout.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

namespace ostrelle {

using State = HotKeys::State;

class PortalHotKeysTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_hotKeys.reset();
        m_portal.reset(); // before the next takes its place on the bus
        m_portal = std::make_unique<ShortcutPortal>();
        m_hotKeys = std::make_unique<PortalHotKeys>(m_layout);
        m_pressed.clear();
        connect(m_hotKeys.get(), &HotKeys::pressed, this, [this](int id, const ActivationToken &token) {
            m_pressed << QStringLiteral("%1 %2").arg(id).arg(token.value);
        });
    }

    void hasWhatTheUserGrants()
    {
        m_portal->appear();
        m_hotKeys->set({m_openClipboard, m_toggle});
        QCOMPARE(m_hotKeys->state(2), State::UserDecides); // nobody waited
        QTRY_COMPARE(m_portal->bound, 1);
        QCOMPARE(m_portal->shortcuts.size(), 2);
        const QVariantMap asked = m_portal->shortcuts.first().properties;
        QCOMPARE(m_portal->shortcuts.first().id, QStringLiteral("openClipboard"));
        QCOMPARE(asked.value(QStringLiteral("description")).toString(), QStringLiteral("Open Clipboard"));
        QCOMPARE(asked.value(QStringLiteral("preferred_trigger")).toString(), QStringLiteral("SHIFT+LOGO+v"));
        QSignalSpy changed(m_hotKeys.get(), &HotKeys::stateChanged);
        m_portal->grant({QStringLiteral("openClipboard")});
        QTRY_COMPARE(changed.count(), 2);
        QCOMPARE(m_hotKeys->state(2), State::Granted);
        QCOMPARE(m_hotKeys->state(1), State::Refused);
        m_portal->press(QStringLiteral("openClipboard"), QStringLiteral("token"));
        QTRY_COMPARE(m_pressed, QStringList(QStringLiteral("2 token")));

        // The user thinks otherwise, in the desktop's settings.
        m_portal->change({QStringLiteral("toggleNotch")});
        QTRY_COMPARE(m_hotKeys->state(1), State::Granted);
        QCOMPARE(m_hotKeys->state(2), State::Refused);
        m_portal->closeSession();
        QTRY_COMPARE(m_hotKeys->state(1), State::Refused);
    }

    void asksOnceForEachSet()
    {
        m_portal->appear();
        m_hotKeys->set({m_openClipboard});
        m_hotKeys->set({m_openClipboard, m_toggle}); // before the first has reached anybody
        QTRY_COMPARE(m_portal->bound, 1);
        QCOMPARE(m_portal->shortcuts.size(), 2);
        m_portal->grant({QStringLiteral("openClipboard"), QStringLiteral("toggleNotch")});
        QTRY_COMPARE(m_hotKeys->state(1), State::Granted);
        m_hotKeys->set({m_openClipboard, m_toggle});
        QCOMPARE(m_hotKeys->state(1), State::Granted);
        HotKey moved = m_toggle;
        moved.keyCode = 122;
        m_hotKeys->set({moved});
        QTRY_COMPARE(m_portal->bound, 2);
        QCOMPARE(m_portal->closedSessions, QStringList(m_portal->sessions.first()));
        QCOMPARE(m_portal->shortcuts.first().properties.value(QStringLiteral("preferred_trigger")).toString(),
                 QStringLiteral("CTRL+ALT+F1"));
        m_portal->refuse();
        QTRY_COMPARE(m_hotKeys->state(1), State::Refused);
        m_hotKeys->set({moved}); // once more, as the user wishes
        QTRY_COMPARE(m_portal->bound, 3);
    }

    void comesBackWithThePortal()
    {
        m_portal->appear();
        m_hotKeys->set({m_openClipboard});
        QTRY_COMPARE(m_portal->bound, 1);
        m_portal->grant({QStringLiteral("openClipboard")});
        QTRY_COMPARE(m_hotKeys->state(2), State::Granted);
        m_portal->die();
        QTRY_COMPARE(m_hotKeys->state(2), State::Refused);
        m_portal->appear();
        QTRY_COMPARE(m_portal->bound, 2);
        m_portal->grant({QStringLiteral("openClipboard")});
        QTRY_COMPARE(m_hotKeys->state(2), State::Granted);
    }

    void leavesItToACommandWhereNoPortalIs_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("no portal") << false;
        QTest::newRow("one without shortcuts") << true;
    }

    void leavesItToACommandWhereNoPortalIs()
    {
        QFETCH(const bool, isThere);
        m_portal->isKnown = false;
        if (isThere) {
            m_portal->appear();
        }
        QSignalSpy changed(m_hotKeys.get(), &HotKeys::stateChanged);
        m_hotKeys->set({m_openClipboard});
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(m_hotKeys->state(2), State::OnlyByCommand);
        m_hotKeys->set({m_toggle});
        QCOMPARE(m_hotKeys->state(1), State::OnlyByCommand);
    }

private:
    const HotKey m_toggle{1, 6, Qt::ControlModifier | Qt::AltModifier, QStringLiteral("toggleNotch"),
                          QStringLiteral("Open Notch")};
    const HotKey m_openClipboard{2, 9, Qt::ShiftModifier | Qt::MetaModifier, QStringLiteral("openClipboard"),
                                 QStringLiteral("Open Clipboard")};
    FakeKeyboardLayout m_layout;
    std::unique_ptr<ShortcutPortal> m_portal;
    std::unique_ptr<PortalHotKeys> m_hotKeys;
    QStringList m_pressed;
};

} // namespace ostrelle

using ostrelle::PortalHotKeysTest;
OSTRELLE_TEST(PortalHotKeysTest)

#include "PortalHotKeysTest.moc"
