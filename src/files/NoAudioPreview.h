#pragma once

#include "files/AudioPreview.h"

#include <QProperty>

namespace ostrelle {

/// Where there is no player: never plays.
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

private:
    QProperty<QString> m_playingPath;
};

} // namespace ostrelle
