#pragma once

#include "notch/controls/GlyphButton.h"

#include <QProperty>

namespace ostrelle {

class UpdateService;

/// The selector's way to the settings. While an update is available a dot and the help text tell of it.
class SettingsButton : public GlyphButton
{
    Q_OBJECT
public:
    SettingsButton(const ControlContext &context, UpdateService &updates, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void follow();

    UpdateService &m_updates;
    AnimatedNumber m_dot; ///< 0 to 1
    QPropertyNotifier m_watch;
};

} // namespace ostrelle
