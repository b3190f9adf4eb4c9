#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>

namespace ostrelle {

/// Stands in for the desktop's portal of choosers and addresses on the test's own bus.
class PortalStandIn : public QDBusVirtualObject
{
public:
    enum class Manner { Works, RefusesToOpen, ShowsNothing, Hangs };

    PortalStandIn();
    ~PortalStandIn() override;

    void appear();
    void die();
    /// The user is done with the last chooser.
    void respond(uint response, const QStringList &uris = {});
    void respondWithGarbage();

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override;

    uint version = 3;
    Manner manner = Manner::Works;
    int opened = 0;
    int closed = 0; ///< by the program, not the user
    QString parentWindow;
    QString title; ///< or the address
    QVariantMap options;

private:
    void emitResponse(const QVariantList &arguments);

    QDBusConnection m_bus;
    QString m_request;
};

} // namespace ostrelle
