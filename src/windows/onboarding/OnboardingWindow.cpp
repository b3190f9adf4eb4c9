#include "windows/onboarding/OnboardingWindow.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "platform/OrdinaryWindows.h"
#include "windows/ChildWidgets.h"
#include "windows/ProgramMark.h"
#include "windows/onboarding/OnboardingGround.h"
#include "windows/onboarding/OnboardingMeasures.h"

#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

namespace ostrelle {
namespace {

constexpr int kIconSize = 48;

} // namespace

OnboardingWindow::OnboardingWindow(const OnboardingSurroundings &around, OrdinaryWindows &windows)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint)
    , m_appearance(around.appearance)
    , m_room(windows.leavesRoomForShadows() ? onboarding::kShadowRoom : QMargins())
    , m_frames(around.scheduler)
    , m_view(makeChild<OnboardingView>(this, ControlContext{around.appearance, m_frames}, around))
{
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Welcome to Ostrelle"));
    setWindowIcon(QIcon(ProgramMark{.size = kIconSize}.picture(1)));
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_TranslucentBackground);
    setFixedSize(onboarding::kContent.grownBy(m_room));
    m_view.move(onboarding::contentRect(m_room).topLeft());
    connect(&m_view, &OnboardingView::finished, this, &OnboardingWindow::finished);
    connect(&m_view, &OnboardingView::closeRequested, this, &QWidget::close);
    connect(&around.appearance, &NotchAppearance::changed, this, &OnboardingWindow::forgetGround);
    m_frame = windows.makeOwnFrame(*this, onboarding::outline(m_room));
    connect(m_frame.get(), &OwnFrame::backingChanged, this, &OnboardingWindow::forgetGround);
}

OnboardingWindow::~OnboardingWindow()
{
    deleteChildWidgets(*this);
}

void OnboardingWindow::centreOn(const QPointF &point)
{
    move((point - QRectF(onboarding::contentRect(m_room)).center()).toPoint());
}

void OnboardingWindow::forgetGround()
{
    m_ground = {};
    update();
}

bool OnboardingWindow::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::WindowDeactivate)
        Q_EMIT deactivated();
    return handled;
}

void OnboardingWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_frames.setRefreshRate(screen()->refreshRate());
}

void OnboardingWindow::closeEvent(QCloseEvent *event)
{
    event->accept();
    Q_EMIT closed();
}

void OnboardingWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
        close();
    else
        QWidget::keyPressEvent(event);
}

void OnboardingWindow::mousePressEvent(QMouseEvent *event)
{
    m_pressed.reset();
    if (event->button() == Qt::LeftButton)
        m_pressed = event->position().toPoint();
}

void OnboardingWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressed || (event->position().toPoint() - *m_pressed).manhattanLength() < QApplication::startDragDistance())
        return;
    m_pressed.reset();
    windowHandle()->startSystemMove();
}

void OnboardingWindow::paintEvent(QPaintEvent *event)
{
    if (m_ground.isNull() || m_ground.devicePixelRatio() != devicePixelRatioF())
        m_ground = OnboardingGround{.scheme = m_appearance.scheme(),
                                    .contrast = m_appearance.contrast(),
                                    .theme = m_appearance.theme(),
                                    .backing = m_frame->backing(),
                                    .shadowRoom = m_room}
                       .picture(devicePixelRatioF());
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.drawImage(0, 0, m_ground);
}

} // namespace ostrelle
