#include "platform/freedesktop/PortalColourPicker.h"
#include "platform/ColourPicker.h"
#include "platform/Platform.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QTest>
#include <QVariantMap>

#include <xcb/xcb.h>

namespace ostrelle {

namespace {

/// The portal's way to write a colour.
struct PortalColour
{
    double red, green, blue;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalColour &colour)
{
    argument.beginStructure();
    argument << colour.red << colour.green << colour.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalColour &colour)
{
    argument.beginStructure();
    argument >> colour.red >> colour.green >> colour.blue;
    argument.endStructure();
    return argument;
}

const auto kService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto kPath = QStringLiteral("/org/freedesktop/portal/desktop");

/// Stands in for the desktop's picker on the test's own bus.
class PickerStandIn : public QDBusVirtualObject
{
public:
    PickerStandIn()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("picker")))
    {
        m_bus.registerVirtualObject(kPath, this, QDBusConnection::SubPath);
        appear();
    }
    ~PickerStandIn() override { QDBusConnection::disconnectFromBus(QStringLiteral("picker")); }

    void appear() { m_bus.registerService(kService); }
    void die() { m_bus.unregisterService(kService); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.member() == QStringLiteral("Close")) {
            ++closed;
            return true;
        }
        if (message.interface() != QStringLiteral("org.freedesktop.portal.Screenshot") ||
            message.member() != QStringLiteral("PickColor") || message.signature() != QStringLiteral("sa{sv}")) {
            return false;
        }
        ++asked;
        const auto options = qdbus_cast<QVariantMap>(message.arguments().at(1));
        m_request = QStringLiteral("%1/request/%2/%3")
                        .arg(kPath, message.service().mid(1).replace(u'.', u'_'),
                             options.value(QStringLiteral("handle_token")).toString());
        return bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(m_request))));
    }
    void respond(uint response, const QVariantMap &results)
    {
        QDBusMessage signal = QDBusMessage::createSignal(m_request, QStringLiteral("org.freedesktop.portal.Request"),
                                                         QStringLiteral("Response"));
        signal << response << results;
        m_bus.send(signal);
    }

    int asked = 0;
    int closed = 0;

private:
    QDBusConnection m_bus;
    QString m_request;
};

} // namespace
} // namespace ostrelle

Q_DECLARE_METATYPE(ostrelle::PortalColour)

namespace ostrelle {

class PortalColourPickerTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { qDBusRegisterMetaType<PortalColour>(); }
    void init()
    {
        TestBase::init();
        m_answers.clear();
        m_portal.asked = 0;
    }

    void tellsWhatTheDesktopsPickerPicked_data()
    {
        QTest::addColumn<uint>("response");
        QTest::addColumn<QVariant>("colour");
        QTest::addColumn<bool>("isPicked");
        QTest::newRow("picked") << 0U << QVariant::fromValue(PortalColour{0.25, 0.5, 1}) << true;
        QTest::newRow("cancelled") << 1U << QVariant() << false;
        QTest::newRow("no color") << 0U << QVariant(QStringLiteral("red")) << false;
        QTest::newRow("no such color") << 0U << QVariant::fromValue(PortalColour{0.25, 7, 1}) << false;
    }

    void tellsWhatTheDesktopsPickerPicked()
    {
        QFETCH(uint, response);
        QFETCH(QVariant, colour);
        QFETCH(bool, isPicked);
        const PortalColourPicker picker([this](auto answer) { m_answers.append(answer); });
        QTRY_COMPARE(m_portal.asked, 1);
        m_portal.respond(response, colour.isValid() ? QVariantMap{{QStringLiteral("color"), colour}} : QVariantMap());
        QTRY_COMPARE(m_answers.size(), 1);
        QCOMPARE(m_answers.first(), isPicked ? std::optional(PickedColour{0.25, 0.5, 1}) : std::nullopt);
    }

    void standsInWhereThePointerCannotBeHad()
    {
        const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> other(xcb_connect(nullptr, nullptr),
                                                                                 &xcb_disconnect);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other.get())).data->root;
        const auto cookie =
            xcb_grab_pointer(other.get(), 0, root, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, 0, 0, 0);
        std::free(xcb_grab_pointer_reply(other.get(), cookie, nullptr));
        const auto platform = Platform::create(QStringLiteral("x11"), QString());
        auto context = std::make_unique<QObject>();
        const auto pick = [&] {
            return platform->colourPicker().pick(
                context.get(), {.gathered = {}, .finished = [this](auto answer) { m_answers.append(answer); }});
        };
        const char *line = "No colour can be picked: another program holds the pointer";
        QTest::ignoreMessage(QtWarningMsg, line);
        QVERIFY(pick());
        QTRY_COMPARE_WITH_TIMEOUT(m_portal.asked, 1, 20'000);
        QVERIFY(!pick()); // the desktop's picker is open
        m_portal.respond(0, {{QStringLiteral("color"), QVariant::fromValue(PortalColour{0, 1, 0})}});
        QTRY_COMPARE(m_answers.size(), 1);
        QCOMPARE(m_answers.first(), std::optional(PickedColour{0, 1, 0}));

        QTest::ignoreMessage(QtWarningMsg, line);
        QVERIFY(pick());
        QTRY_COMPARE_WITH_TIMEOUT(m_portal.asked, 2, 20'000);
        context.reset(); // closes it
        QTRY_COMPARE(m_portal.closed, 1);
        m_portal.die();
        context = std::make_unique<QObject>();
        QTest::ignoreMessage(QtWarningMsg, line);
        QVERIFY(pick());
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.size(), 2, 20'000); // a desktop without a picker
        QVERIFY(!m_answers.last());
    }

private:
    QList<std::optional<PickedColour>> m_answers;
    PickerStandIn m_portal;
};

} // namespace ostrelle

using ostrelle::PortalColourPickerTest;
OSTRELLE_TEST(PortalColourPickerTest)

#include "PortalColourPickerTest.moc"
