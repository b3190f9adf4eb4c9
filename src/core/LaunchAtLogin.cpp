#include "core/LaunchAtLogin.h"

#include <QLoggingCategory>
#include <QPointer>

namespace ostrelle {

namespace {

Q_LOGGING_CATEGORY(lcCore, "ostrelle.core", QtWarningMsg)

} // namespace

LaunchAtLogin::LaunchAtLogin(LoginItem &item, QObject *parent)
    : QObject(parent)
    , m_item(item)
{
}

bool LaunchAtLogin::isEnabled() const
{
    return m_item.status() == LoginItem::Status::Enabled;
}

bool LaunchAtLogin::requiresApproval() const
{
    return m_item.status() == LoginItem::Status::RequiresApproval;
}

QString LaunchAtLogin::statusText() const
{
    switch (m_item.status()) {
    case LoginItem::Status::Enabled:
        return QStringLiteral("on");
    case LoginItem::Status::RequiresApproval:
        return QStringLiteral("requires approval");
    case LoginItem::Status::NotRegistered:
    case LoginItem::Status::NotFound:
        break;
    }
    return QStringLiteral("off");
}

void LaunchAtLogin::setEnabled(bool isEnabled)
{
    setEnabled(isEnabled, this, [](const QString &) {});
}

void LaunchAtLogin::setEnabled(bool isEnabled, QObject *context, const LoginItem::Answer &done)
{
    if (isEnabled == this->isEnabled()) {
        done({});
        return;
    }
    m_item.setRegistered(isEnabled, this, [this, guard = QPointer<QObject>(context), done](const QString &problem) {
        if (!problem.isEmpty())
            qCWarning(lcCore, "Launch at login change failed: %s", qUtf8Printable(problem));
        if (guard)
            done(problem);
        Q_EMIT changed();
    });
}

} // namespace ostrelle
