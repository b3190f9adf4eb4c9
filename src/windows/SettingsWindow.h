#pragma once

#include "notch/FrameClock.h"
#include "windows/SettingsView.h"

#include <QWidget>

namespace ostrelle {

/// The settings window: of a fixed size, with a title bar by which it is moved and closed. Escape and Ctrl+W close it.
class SettingsWindow : public QWidget
{
    Q_OBJECT
public:
    SettingsWindow(const SettingsSurroundings &around, SettingsSection section);
    ~SettingsWindow() override;

    const SettingsView &view() const { return m_view; }

Q_SIGNALS:
    void closed();

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    FrameClock m_frames;
    SettingsView &m_view;
};

} // namespace ostrelle
