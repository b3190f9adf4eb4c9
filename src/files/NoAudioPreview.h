#pragma once

#include "files/AudioPreview.h"

#include <QProperty>

namespace ostrelle {

/// Where no player is installed: never plays.
class NoAudioPreview final : public AudioPreview
{
    Q_OBJECT
public:
    using AudioPreview::AudioPreview;

    bool isAvailable() const override { return false; }
    QString playingPath() const override { return {}; }
    QBindable<QString> bindablePlayingPath() override { return &m_playingPath; }
    void toggle(const QString &) override {}
    void stop(const QString &) override {}
    void stop() override {}
    double position() const override { return 0; }
    QBindable<double> bindablePosition() override { return &m_position; }
    double length() const override { return 0; }
    QBindable<double> bindableLength() override { return &m_length; }
    void seek(double) override {}

private:
    QProperty<QString> m_playingPath;
    QProperty<double> m_position{0};
    QProperty<double> m_length{0};
};

} // namespace ostrelle
