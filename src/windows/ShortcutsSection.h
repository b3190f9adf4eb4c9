#pragma once

#include "records/ShortcutAction.h"
#include "windows/SettingsPage.h"

#include <vector>

namespace ostrelle {

class ShortcutRecorder;

/// The key combinations that work in every program.
class ShortcutsSection : public SettingsPage
{
    Q_OBJECT
public:
    ShortcutsSection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent);

private:
    void addAction(SettingsGroup &group, ShortcutAction action, const KeyboardLayout &layout);
    void showRefusals();

    struct Row
    {
        ShortcutAction action;
        SettingsRow *row;           ///< a child
        ShortcutRecorder *recorder; ///< in it
    };

    ShortcutService &m_shortcuts;
    std::vector<Row> m_rows;
};

} // namespace ostrelle
