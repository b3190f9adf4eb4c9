#pragma once

#include "notch/controls/ControlContext.h"
#include "windows/SettingsGroup.h"
#include "windows/SettingsRow.h"
#include "windows/SettingsSurroundings.h"

#include <QProperty>
#include <QWidget>

#include <functional>
#include <vector>

class QVBoxLayout;

namespace ostrelle {

class SwitchButton;

/// One page of the settings window: groups below each other. Base of the sections.
class SettingsPage : public QWidget
{
    Q_OBJECT
protected:
    SettingsPage(const ControlContext &context, QWidget *parent);

    const ControlContext &context() const { return m_context; }

    SettingsGroup &addGroup(const QString &title, SettingsGroup::Container container = SettingsGroup::Container::Card);
    void addContent(QWidget &widget);
    SettingsRow &addControl(SettingsGroup &group, const SettingsRow::Content &content, QWidget &control);
    /// A row with a switch that shows a setting and assigns it.
    SwitchButton &addSwitch(SettingsGroup &group, const SettingsRow::Content &content, QBindable<bool> setting,
                            const std::function<void(bool)> &assign);
    /// Calls `show` now and whenever the setting changes.
    template <typename Value>
    void follow(QBindable<Value> setting, std::function<void()> show)
    {
        show();
        m_notifiers.push_back(setting.addNotifier(std::move(show)));
    }

private:
    ControlContext m_context;
    QVBoxLayout &m_layout;
    std::vector<QPropertyNotifier> m_notifiers;
};

} // namespace ostrelle
