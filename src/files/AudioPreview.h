#pragma once

#include <QBindable>
#include <QObject>
#include <QString>

namespace ostrelle {

/// Plays audio files in place, one at a time. The file tools show and steer it through this; main thread.
class AudioPreview : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Whether there is a player at all: without one no play control is offered.
    virtual bool isAvailable() const = 0;
    /// The path that is being played; empty when nothing is.
    virtual QString playingPath() const = 0;
    virtual QBindable<QString> bindablePlayingPath() = 0;
    /// Plays the file from its beginning, or stops it when it is the one being played.
    virtual void toggle(const QString &path) = 0;
    /// Stops when it is this file that is being played.
    virtual void stop(const QString &path) = 0;
    /// Stops, whatever is being played.
    virtual void stop() = 0;
};

} // namespace ostrelle
