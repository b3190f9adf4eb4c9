#include "windows/ModulesSection.h"

#include "core/SettingsStore.h"
#include "foundation/MakeChild.h"
#include "windows/ToolList.h"

namespace ostrelle {

ModulesSection::ModulesSection(const ControlContext &context, const SettingsSurroundings &around, QWidget *parent)
    : SettingsPage(context, parent)
{
    SettingsStore &settings = around.settings;
    SettingsGroup &group = addGroup(QStringLiteral("Tools"));
    group.setFooter(QStringLiteral("Drag to reorder. The order here is the order in the notch."));
    auto &list = makeChild<ToolList>(&group.container(), this->context(), around.dragOut, around.dragText);
    group.addRow(list);
    follow<QList<KestroModule>>(settings.bindableModuleOrder(),
                                [&settings, &list] { list.showOrder(settings.moduleOrder()); });
    follow<QSet<KestroModule>>(settings.bindableEnabledModules(),
                               [&settings, &list] { list.showEnabled(settings.enabledModules()); });
    connect(&list, &ToolList::reordered, this,
            [&settings](const QList<KestroModule> &order) { settings.setModuleOrder(order); });
    connect(&list, &ToolList::switched, this, [&settings](KestroModule module, bool isShown) {
        QSet<KestroModule> enabled = settings.enabledModules();
        if (isShown)
            enabled.insert(module);
        else
            enabled.remove(module);
        settings.setEnabledModules(enabled);
    });
}

} // namespace ostrelle
