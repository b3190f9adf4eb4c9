#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace ostrelle {

/// Another program on the same display; ended with this object. The event loop runs while it is waited for.
class OtherProgram
{
public:
    /// A peer of the tests' own, or an installed program.
    OtherProgram(const QString &program, const QStringList &arguments, const QByteArray &input = {});
    ~OtherProgram();

    /// Whether it says that line, or a line that it said already was it; each line is looked at once.
    bool says(const QByteArray &line);
    /// The same without waiting.
    bool hasSaid(const QByteArray &line);
    /// Whether it ends by itself with success.
    bool succeeds();
    /// What it printed, when it is done; nothing when it fails.
    QByteArray output();
    /// Killed, and gone for the X server as well as for this process.
    void end();

private:
    QProcess m_process;
};

/// An honest owner of the clipboard that serves `text` by now.
OtherProgram copyElsewhere(const QString &text);

} // namespace ostrelle
