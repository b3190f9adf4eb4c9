#include "windows/ShortcutsSection.h"

#include "foundation/MakeChild.h"
#include "shortcuts/ShortcutService.h"
#include "windows/ShortcutRecorder.h"

namespace ostrelle {

ShortcutsSection::ShortcutsSection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent)
    : SettingsPage(context, parent)
    , m_shortcuts(around.shortcuts)
{
    SettingsGroup &group = addGroup(QStringLiteral("Global Shortcuts"));
    group.setFooter(QStringLiteral("Click a shortcut and press the keys you want. Shortcuts need at least one "
                                   "modifier."));
    for (const ShortcutAction action : kAllShortcutActions)
        addAction(group, action, around.keyboardLayout);
    // The desktop is asked after a combination was stored.
    follow<KeyCombos>(m_shortcuts.bindableCombos(), [this] {
        QMetaObject::invokeMethod(this, &ShortcutsSection::showRefusals, Qt::QueuedConnection);
    });
    connect(&m_shortcuts, &ShortcutService::registrationsChanged, this, &ShortcutsSection::showRefusals);
}

void ShortcutsSection::addAction(SettingsGroup &group, ShortcutAction action, const KeyboardLayout &layout)
{
    auto &recorder = makeChild<ShortcutRecorder>(&group.container(), context(), m_shortcuts, layout, action);
    SettingsRow &row = addControl(group, {.title = title(action)}, recorder);
    m_rows.push_back({action, &row, &recorder});
    // Keys can go to one of them only.
    connect(&recorder, &ShortcutRecorder::aboutToBegin, this, [this, &recorder] {
        for (const Row &other : m_rows) {
            if (other.recorder != &recorder)
                other.recorder->stop();
        }
    });
}

void ShortcutsSection::showRefusals()
{
    for (const Row &row : m_rows) {
        const bool isRefused = m_shortcuts.registration(row.action) == ShortcutService::Registration::Refused;
        const QString problem = isRefused
                                    ? QStringLiteral("The system has not given this shortcut to Ostrelle; another "
                                                     "program may use it.")
                                    : QString();
        row.row->setToolTip(problem);
        row.recorder->setProblem(problem);
    }
}

} // namespace ostrelle
