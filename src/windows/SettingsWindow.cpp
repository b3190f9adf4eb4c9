#include "windows/SettingsWindow.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "windows/ChildWidgets.h"
#include "windows/ProgramMark.h"

#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QScreen>

namespace ostrelle {
namespace {

constexpr QSize kSize(620, 452);
constexpr int kIconSize = 48;

} // namespace

SettingsWindow::SettingsWindow(const SettingsSurroundings &around, SettingsSection section)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowCloseButtonHint)
    , m_frames(around.scheduler)
    , m_view(makeChild<SettingsView>(this, ControlContext{around.appearance, m_frames}, around, section))
{
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Ostrelle Settings"));
    setWindowIcon(QIcon(ProgramMark{.size = kIconSize}.picture(1)));
    setAttribute(Qt::WA_QuitOnClose, false);
    setFixedSize(kSize);
    m_view.setGeometry(rect());
}

SettingsWindow::~SettingsWindow()
{
    deleteChildWidgets(*this);
}

void SettingsWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_frames.setRefreshRate(screen()->refreshRate());
}

void SettingsWindow::closeEvent(QCloseEvent *event)
{
    event->accept();
    Q_EMIT closed();
}

void SettingsWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
        close();
    else
        QWidget::keyPressEvent(event);
}

} // namespace ostrelle
