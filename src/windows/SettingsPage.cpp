#include "windows/SettingsPage.h"

#include "foundation/MakeChild.h"
#include "windows/controls/SwitchButton.h"

#include <QVBoxLayout>

namespace ostrelle {
namespace {

constexpr int kPaddingSide = 22;
constexpr int kPaddingTop = 20;
constexpr int kGap = 22;

} // namespace

SettingsPage::SettingsPage(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_layout(makeChild<QVBoxLayout>(this))
{
    const int room = SettingsGroup::kShadowRoom;
    m_layout.setContentsMargins(kPaddingSide, kPaddingTop, kPaddingSide, kPaddingTop - room);
    m_layout.setSpacing(kGap - room);
    m_layout.addStretch();
}

SettingsGroup &SettingsPage::addGroup(const QString &title, SettingsGroup::Container container)
{
    auto &group = makeChild<SettingsGroup>(this, m_context, title, container);
    addContent(group);
    return group;
}

void SettingsPage::addContent(QWidget &widget)
{
    m_layout.insertWidget(m_layout.count() - 1, &widget); // before the stretch
}

SettingsRow &SettingsPage::addControl(SettingsGroup &group, const SettingsRow::Content &content, QWidget &control)
{
    auto &row = makeChild<SettingsRow>(&group.container(), m_context, content, &control);
    group.addRow(row);
    return row;
}

SwitchButton &SettingsPage::addSwitch(SettingsGroup &group, const SettingsRow::Content &content,
                                      QBindable<bool> setting, const std::function<void(bool)> &assign)
{
    auto &control = makeChild<SwitchButton>(&group.container(), m_context, SwitchButton::Size::Ordinary);
    addControl(group, content, control);
    follow<bool>(setting, [&control, setting] { control.showState(setting.value()); });
    connect(&control, &SwitchButton::switched, this, assign);
    return control;
}

} // namespace ostrelle
