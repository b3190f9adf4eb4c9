#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QPropertyNotifier>
#include <QString>
#include <QWidget>

namespace ostrelle {

class AudioPreview;
class PlayBadge;
class SeekBar;

/// The head of the audio tool's detail: the file's name and a badge that plays it. While it is being played there is a
/// bar under the name to go elsewhere in it, between position and length.
class AudioHead : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kHeight = 60;

    AudioHead(const ControlContext &context, AudioPreview &preview, QWidget *parent);
    ~AudioHead() override;

    /// `duration` in seconds stands in while the player does not know the length; 0 when nobody does. Without a path
    /// there is no file.
    void setFile(const QString &path, double duration);
    /// Whether it is this file that is being played.
    bool isPlaying() const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void followPreview();
    double length() const;
    int timeWidth() const;
    void placeBar();

    ControlContext m_context;
    AudioPreview &m_preview;
    PlayBadge &m_badge;
    SeekBar &m_bar;
    AnimatedNumber m_playing; ///< 0 to 1
    QString m_path;
    double m_duration = 0;
    QPropertyNotifier m_pathWatch;
    QPropertyNotifier m_positionWatch;
    QPropertyNotifier m_lengthWatch;
};

} // namespace ostrelle
