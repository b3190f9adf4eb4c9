#pragma once

#include "platform/LoginItem.h"

#include <QObject>

namespace ostrelle {

/// Whether the program starts with the session. It keeps nothing: what the desktop says is what counts. Main thread.
class LaunchAtLogin : public QObject
{
    Q_OBJECT
public:
    explicit LaunchAtLogin(LoginItem &item, QObject *parent = nullptr);

    bool isEnabled() const;
    /// It was registered, and the user or the desktop has switched it off.
    bool requiresApproval() const;
    /// "on", "off" or "requires approval".
    QString statusText() const;
    /// Nothing when it is so already. A change that fails is logged and not tried again.
    void setEnabled(bool isEnabled);
    /// The same, and tells when it is done; `problem` is empty when nothing went wrong.
    void setEnabled(bool isEnabled, QObject *context, const LoginItem::Answer &done);

Q_SIGNALS:
    /// After every attempt, also one that failed.
    void changed();

private:
    LoginItem &m_item;
};

} // namespace ostrelle
