#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <map>
#include <optional>

namespace ostrelle {

/// While it lives, the home folder and the XDG folders are below a temporary folder, which goes away with it.
class TemporaryHome
{
public:
    TemporaryHome();
    ~TemporaryHome();
    TemporaryHome(const TemporaryHome &) = delete;
    TemporaryHome &operator=(const TemporaryHome &) = delete;

    /// The home folder, or `name` in it.
    QString path(const QString &name = QString()) const;
    /// Sets a variable that is put back at the end.
    void set(const char *variable, const QString &value);

private:
    QTemporaryDir m_folder;
    std::map<QByteArray, std::optional<QByteArray>> m_before;
};

} // namespace ostrelle
