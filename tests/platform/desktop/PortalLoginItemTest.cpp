#include "platform/freedesktop/PortalLoginItem.h"
#include "support/TemporaryHome.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QTest>

#include <memory>
#include <optional>

namespace ostrelle {

namespace {

const auto kService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto kPath = QStringLiteral("/org/freedesktop/portal/desktop");

/// org.freedesktop.portal.Background on the test's own bus.
class BackgroundPortal : public QDBusVirtualObject
{
public:
    BackgroundPortal()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("background")))
    {
        m_bus.registerVirtualObject(kPath, this, QDBusConnection::SubPath);
        m_bus.registerService(kService);
    }
    ~BackgroundPortal() override
    {
        m_bus.unregisterService(kService);
        m_bus.unregisterObject(kPath, QDBusConnection::UnregisterTree);
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.interface() != QStringLiteral("org.freedesktop.portal.Background") || refuses)
            return false;
        ++asked;
        options = qdbus_cast<QVariantMap>(message.arguments().at(1));
        m_request = QStringLiteral("%1/request/%2/%3")
                        .arg(kPath, message.service().mid(1).replace(u'.', u'_'),
                             options.value(QStringLiteral("handle_token")).toString());
        return bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(m_request))));
    }
    void respond(uint response, bool autostart)
    {
        QDBusMessage signal = QDBusMessage::createSignal(m_request, QStringLiteral("org.freedesktop.portal.Request"),
                                                         QStringLiteral("Response"));
        signal << response
               << QVariantMap{{QStringLiteral("background"), true}, {QStringLiteral("autostart"), autostart}};
        m_bus.send(signal);
    }

    bool refuses = false;
    int asked = 0;
    QVariantMap options;

private:
    QDBusConnection m_bus;
    QString m_request;
};

} // namespace

class PortalLoginItemTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestBase::init();
        m_home = std::make_unique<TemporaryHome>();
        m_home->set("XDG_CONFIG_HOME", m_home->path(QStringLiteral("config")));
        m_home->set("XDG_CONFIG_DIRS", m_home->path(QStringLiteral("machine")));
        m_item = std::make_unique<PortalLoginItem>(
            AutostartEntry(QStringLiteral("org.example.Ostrelle"), QStringLiteral("/app/bin/ostrelle")),
            QStringList{QStringLiteral("/app/bin/ostrelle")});
        m_problem.reset();
    }

    void remembersWhatTheUserDecided_data()
    {
        QTest::addColumn<uint>("response");
        QTest::addColumn<bool>("autostart");
        QTest::addColumn<LoginItem::Status>("status");
        QTest::newRow("granted") << 0U << true << LoginItem::Status::Enabled;
        QTest::newRow("not at login") << 0U << false << LoginItem::Status::RequiresApproval;
        QTest::newRow("refused") << 1U << false << LoginItem::Status::RequiresApproval;
    }

    void remembersWhatTheUserDecided()
    {
        QFETCH(const uint, response);
        QFETCH(const bool, autostart);
        BackgroundPortal portal;
        set(true);
        QTRY_COMPARE(portal.asked, 1);
        QVERIFY(portal.options.value(QStringLiteral("autostart")).toBool());
        QCOMPARE(portal.options.value(QStringLiteral("commandline")).toStringList(),
                 QStringList(QStringLiteral("/app/bin/ostrelle")));
        QCOMPARE(m_item->status(), LoginItem::Status::NotRegistered);
        portal.respond(response, autostart);
        QTRY_VERIFY(m_problem);
        QCOMPARE(*m_problem, QString());
        QTEST(m_item->status(), "status");

        set(false);
        QTRY_COMPARE(portal.asked, 2);
        QVERIFY(!portal.options.value(QStringLiteral("autostart"), true).toBool());
        portal.respond(0, false);
        QTRY_VERIFY(m_problem);
        QCOMPARE(m_item->status(), LoginItem::Status::NotRegistered);
    }

    void saysWhyWhereNobodyAnswers_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("no portal") << false;
        QTest::newRow("one without this interface") << true;
    }

    void saysWhyWhereNobodyAnswers()
    {
        QFETCH(const bool, isThere);
        std::optional<BackgroundPortal> portal;
        if (isThere)
            portal.emplace().refuses = true;
        set(true);
        QTRY_VERIFY(m_problem);
        QVERIFY(!m_problem->isEmpty());
        QCOMPARE(m_item->status(), LoginItem::Status::NotRegistered);
    }

private:
    void set(bool isRegistered)
    {
        m_problem.reset();
        m_item->setRegistered(isRegistered, this, [this](const QString &problem) { m_problem = problem; });
    }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<PortalLoginItem> m_item;
    std::optional<QString> m_problem;
};

} // namespace ostrelle

using ostrelle::PortalLoginItemTest;
OSTRELLE_TEST(PortalLoginItemTest)

#include "PortalLoginItemTest.moc"
