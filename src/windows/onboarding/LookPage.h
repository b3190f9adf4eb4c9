#pragma once

#include "notch/controls/ControlContext.h"

#include <QPropertyNotifier>
#include <QWidget>

namespace ostrelle {

class SettingsStore;

/// The themes to choose from, and whether light or dark.
class LookPage : public QWidget
{
    Q_OBJECT
public:
    LookPage(const ControlContext &context, SettingsStore &settings, QWidget *parent);

private:
    void addThemes(const ControlContext &context);
    void addAppearance(const ControlContext &context);

    SettingsStore &m_settings;
    QPropertyNotifier m_themeWatch;
    QPropertyNotifier m_appearanceWatch;
};

} // namespace ostrelle
