#include "windows/SettingsView.h"

#include "foundation/MakeChild.h"
#include "notch/NotchAppearance.h"
#include "windows/AboutSection.h"
#include "windows/AppearanceSection.h"
#include "windows/GeneralSection.h"
#include "windows/ModulesSection.h"
#include "windows/PrivacySection.h"
#include "windows/SettingsSidebar.h"
#include "windows/ShortcutsSection.h"
#include "windows/WindowColors.h"
#include "windows/controls/PageScroll.h"

#include <QPainter>

#include <utility>

namespace ostrelle {

SettingsView::SettingsView(const ControlContext &context, SettingsSurroundings around, SettingsSection section,
                           QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_around(std::move(around))
    , m_section(section)
    , m_sidebar(makeChild<SettingsSidebar>(this, context, section))
{
    connect(&m_sidebar, &SettingsSidebar::chosen, this, [this](SettingsSection chosen) {
        m_sidebar.takeFocus(Qt::OtherFocusReason);
        if (std::exchange(m_section, chosen) != chosen)
            showPage();
    });
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
    showPage();
    m_sidebar.takeFocus(Qt::OtherFocusReason);
}

void SettingsView::showPage()
{
    if (m_page != nullptr) {
        m_page->hide();
        m_page->deleteLater();
    }
    m_page = &makeChild<PageScroll>(this, m_context);
    QWidget &page = makePage();
    m_page->setWidget(&page);
    // The window's ground is the page's, too.
    page.setAutoFillBackground(false);
    m_page->setGeometry(SettingsSidebar::kWidth, 0, width() - SettingsSidebar::kWidth, height());
    m_page->show();
}

QWidget &SettingsView::makePage()
{
    switch (m_section) {
    case SettingsSection::General:
        return makeChild<GeneralSection>(m_page, m_context, m_around);
    case SettingsSection::Modules:
        return makeChild<ModulesSection>(m_page, m_context, m_around);
    case SettingsSection::Shortcuts:
        return makeChild<ShortcutsSection>(m_page, m_context, m_around);
    case SettingsSection::Appearance:
        return makeChild<AppearanceSection>(m_page, m_context, m_around);
    case SettingsSection::Privacy:
        return makeChild<PrivacySection>(m_page, m_context, m_around);
    case SettingsSection::About:
        break;
    }
    return makeChild<AboutSection>(m_page, m_context, m_around);
}

void SettingsView::resizeEvent(QResizeEvent *)
{
    m_sidebar.setGeometry(0, 0, SettingsSidebar::kWidth, height());
    m_page->setGeometry(SettingsSidebar::kWidth, 0, width() - SettingsSidebar::kWidth, height());
}

void SettingsView::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), WindowColors::of(m_context.appearance).page);
}

} // namespace ostrelle
