#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace ostrelle {

/// The program's registration with the desktop as something that starts with the session. Main thread.
class LoginItem : public QObject
{
    Q_OBJECT
public:
    enum class Status {
        NotRegistered,
        Enabled,
        RequiresApproval, ///< registered, but switched off by the desktop's or the user's own means
        NotFound          ///< cannot be told here
    };
    /// What went wrong, in words; empty when nothing did.
    using Answer = std::function<void(const QString &problem)>;

    /// The one of this desktop; needs no display. `applicationId` is what the desktop knows the program by, `command`
    /// the path of the executable that starts with the session.
    static std::unique_ptr<LoginItem> create(const QString &applicationId, const QString &command);

    using QObject::QObject;

    virtual Status status() const = 0;
    /// Asks for the registration, also for one that was switched off, or takes it back. The answer may come at once,
    /// or when the user has decided; not at all when `context` is gone by then.
    virtual void setRegistered(bool isRegistered, QObject *context, Answer answer) = 0;

Q_SIGNALS:
    /// status() may have changed by setRegistered().
    void statusChanged();
};

} // namespace ostrelle
