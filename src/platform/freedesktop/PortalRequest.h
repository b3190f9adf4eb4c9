#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace ostrelle {

/// One call to a desktop portal that is answered on a Request object of its own, as those are that ask the user.
/// Destroying it ends the question, unanswered. Main thread.
class PortalRequest final : public QObject
{
    Q_OBJECT
public:
    /// Nothing: refused, cancelled, or there is no such portal. The request may be destroyed from inside.
    using Answer = std::function<void(std::optional<QVariantMap> results)>;

    /// Calls `member` of org.freedesktop.portal.`portal` with `arguments` and, last, `options`.
    PortalRequest(QDBusConnection bus, const QString &portal, const QString &member, const QVariantList &arguments,
                  QVariantMap options, Answer answer);
    ~PortalRequest() override;

    /// Of an answer that is nothing: whether that is the user's wish.
    bool wasCancelled() const { return m_wasCancelled; }

    static QString service();
    /// The object that all portals are interfaces of.
    static QString path();
    /// The interface of Request objects.
    static QString interface();
    /// For the name of a Request or Session object: nobody else knows it.
    static QString freshToken();

private Q_SLOTS:
    void handleResponse(const QDBusMessage &message);

private:
    void finish(std::optional<QVariantMap> results);

    QDBusConnection m_bus;
    QString m_requestPath;
    Answer m_answer; ///< empty once it was given
    bool m_wasCancelled = false;
};

} // namespace ostrelle
