#include "platform/AlertSound.h"
#include "platform/Platform.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QTest>

#include <X11/XKBlib.h>

namespace ostrelle {
namespace {

/// Another program that hears the server's bell.
class BellListener
{
public:
    BellListener()
        : m_display(XkbOpenDisplay(nullptr, &m_event, nullptr, nullptr, nullptr, nullptr))
    {
        if (m_display) {
            XkbSelectEvents(m_display, XkbUseCoreKbd, XkbBellNotifyMask, XkbBellNotifyMask);
            XSync(m_display, False);
        }
    }
    ~BellListener()
    {
        if (m_display)
            XCloseDisplay(m_display);
    }
    BellListener(const BellListener &) = delete;
    BellListener &operator=(const BellListener &) = delete;

    bool isListening() const { return m_display != nullptr; }
    /// How often it rang since the last call.
    int bells()
    {
        int count = 0;
        while (XPending(m_display) > 0) {
            XkbEvent event;
            XNextEvent(m_display, &event.core);
            if (event.type == m_event && event.any.xkb_type == XkbBellNotify)
                ++count;
        }
        return count;
    }

private:
    int m_event = 0;
    Display *m_display;
};

} // namespace

class X11AlertSoundTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void ringsTheBellAtOnce();
};

void X11AlertSoundTest::ringsTheBellAtOnce()
{
    const auto platform = Platform::create(QStringLiteral("x11"), QString());
    BellListener listener;
    QVERIFY(listener.isListening());
    platform->alertSound().sound();
    int bells = 0;
    QTRY_COMPARE(bells += listener.bells(), 1);
}

} // namespace ostrelle

using ostrelle::X11AlertSoundTest;
OSTRELLE_TEST(X11AlertSoundTest)
#include "X11AlertSoundTest.moc"
