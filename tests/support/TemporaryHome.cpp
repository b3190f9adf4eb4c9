#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>

namespace ostrelle {

TemporaryHome::TemporaryHome()
{
    set("HOME", path());
    set("XDG_DATA_HOME", path(QStringLiteral("data")));
    set("XDG_CONFIG_HOME", path(QStringLiteral("config")));
    set("XDG_RUNTIME_DIR", path(QStringLiteral("run")));
    QDir().mkpath(path(QStringLiteral("run")));
    QFile::setPermissions(path(QStringLiteral("run")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TemporaryHome::~TemporaryHome()
{
    for (const auto &[variable, value] : m_before) {
        if (value)
            qputenv(variable.constData(), *value);
        else
            qunsetenv(variable.constData());
    }
}

QString TemporaryHome::path(const QString &name) const
{
    return name.isEmpty() ? m_folder.path() : m_folder.filePath(name);
}

void TemporaryHome::set(const char *variable, const QString &value)
{
    const bool wasSet = qEnvironmentVariableIsSet(variable);
    m_before.try_emplace(variable, wasSet ? std::optional(qgetenv(variable)) : std::nullopt);
    qputenv(variable, QFile::encodeName(value));
}

} // namespace ostrelle
