#pragma once

#include "files/AudioPreview.h"
#include "media_client/Playback.h"

namespace ostrelle {

class AlertSound;
class Haptics;

/// Plays files in place through the user's sound server. A file counts as playing from the moment it is asked for; when
/// it turns out that it cannot be played, the desktop's alert sounds.
class AudioPreviewService final : public AudioPreview
{
    Q_OBJECT
public:
    /// `helpers` is the folder of the players, see Playback.
    AudioPreviewService(TaskScheduler &scheduler, const QString &helpers, Haptics &haptics, AlertSound &alert,
                        QObject *parent = nullptr);

    bool isAvailable() const override { return true; }
    QString playingPath() const override { return m_playingPath; }
    QBindable<QString> bindablePlayingPath() override { return &m_playingPath; }
    void toggle(const QString &path) override;
    void stop(const QString &path) override;
    void stop() override;

    double position() const override { return m_position; }
    QBindable<double> bindablePosition() override { return &m_position; }
    double length() const override { return m_length; }
    QBindable<double> bindableLength() override { return &m_length; }
    void seek(double seconds) override;

private:
    void clear();
    void setPosition(double seconds);
    void fail();

    Haptics &m_haptics;
    AlertSound &m_alert;
    Playback m_playback;
    Q_OBJECT_BINDABLE_PROPERTY(AudioPreviewService, QString, m_playingPath)
    Q_OBJECT_BINDABLE_PROPERTY(AudioPreviewService, double, m_position)
    Q_OBJECT_BINDABLE_PROPERTY(AudioPreviewService, double, m_length)
};

} // namespace ostrelle
