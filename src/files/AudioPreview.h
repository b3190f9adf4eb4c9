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

    /// Where in the file it plays, seconds; 0 when nothing is being played.
    virtual double position() const = 0;
    virtual QBindable<double> bindablePosition() = 0;
    /// Of what is being played, seconds; 0 while it is unknown.
    virtual double length() const = 0;
    virtual QBindable<double> bindableLength() = 0;
    /// Goes on playing from there, as far as the file reaches; nothing when nothing is being played.
    virtual void seek(double seconds) = 0;

Q_SIGNALS:
    /// The file could not be played, or not to its end.
    void failed(const QString &path);
};

} // namespace ostrelle
