#pragma once

#include <QObject>

namespace ostrelle {

/// Counts the windows and system pickers that currently need the program to behave as an ordinary application. Main
/// thread.
class ForegroundSession : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    int depth() const { return m_depth; }
    void begin();
    /// Never below zero.
    void end();

Q_SIGNALS:
    /// The first session began (true) or the last one ended (false).
    void foregroundChanged(bool isForeground);
    /// A session began: the application should become active.
    void activationRequested();

private:
    int m_depth = 0;
};

} // namespace ostrelle
