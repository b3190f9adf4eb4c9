#pragma once

#include "files/AudioPreview.h"

#include <QHash>
#include <QProperty>
#include <QSet>

#include <algorithm>

namespace ostrelle {

/// A player without sound, whose time passes when the test says so.
class FakeAudioPreview final : public AudioPreview
{
public:
    static constexpr double kUsualLength = 60;

    bool isAvailable() const override { return true; }
    QString playingPath() const override { return m_playingPath; }
    QBindable<QString> bindablePlayingPath() override { return &m_playingPath; }
    void toggle(const QString &path) override
    {
        const bool isPlaying = m_playingPath.value() == path;
        stop();
        if (isPlaying)
            return;
        if (m_unplayable.contains(path)) {
            Q_EMIT failed(path);
            return;
        }
        m_length = m_lengths.value(path, kUsualLength);
        m_playingPath = path;
    }
    void stop(const QString &path) override
    {
        if (m_playingPath.value() == path)
            stop();
    }
    void stop() override
    {
        m_playingPath = QString();
        m_position = 0;
        m_length = 0;
    }
    double position() const override { return m_position; }
    QBindable<double> bindablePosition() override { return &m_position; }
    double length() const override { return m_length; }
    QBindable<double> bindableLength() override { return &m_length; }
    void seek(double seconds) override
    {
        if (!m_playingPath.value().isEmpty())
            m_position = std::clamp(seconds, 0.0, m_length.value());
    }

    void setLength(const QString &path, double seconds) { m_lengths.insert(path, seconds); }
    void makeUnplayable(const QString &path) { m_unplayable.insert(path); }
    /// So many seconds are heard, or what is left of the file.
    void play(double seconds)
    {
        if (m_playingPath.value().isEmpty())
            return;
        if (m_position + seconds >= m_length)
            stop();
        else
            m_position = m_position + seconds;
    }

private:
    QProperty<QString> m_playingPath;
    QProperty<double> m_position{0};
    QProperty<double> m_length{0};
    QHash<QString, double> m_lengths;
    QSet<QString> m_unplayable;
};

} // namespace ostrelle
