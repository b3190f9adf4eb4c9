#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

class QDBusMessage;

namespace ostrelle {

/// The profiles that colord has for screens, where it runs; it is not started for this. Asks while it lives, and calls
/// nothing afterwards. Main thread.
class ColordProfiles final : public QObject
{
    Q_OBJECT
public:
    /// Of an output as RandR names it; not called for one without a profile.
    using Answer = std::function<void(const QString &output, const QByteArray &icc)>;

    ColordProfiles(QStringList outputs, Answer answer);
    ~ColordProfiles() override;

private:
    void begin(const QDBusConnection &bus, const QStringList &outputs);
    void ask(const QDBusMessage &question, std::function<void(const QDBusMessage &)> replied);
    void askProperty(const QString &path, const QString &interface, const QString &name,
                     std::function<void(const QVariant &)> replied);
    void findDevice(const QString &output);
    void readFile(const QString &output, const QString &path);

    Answer m_answer;
    std::optional<QDBusConnection> m_bus;
};

} // namespace ostrelle
