#include "windows/onboarding/OnboardingView.h"

#include "foundation/MakeChild.h"
#include "notch/ContentFade.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/GlyphButton.h"
#include "records/Motion.h"
#include "windows/onboarding/LookPage.h"
#include "windows/onboarding/OnboardingFooter.h"
#include "windows/onboarding/OnboardingMeasures.h"
#include "windows/onboarding/ReachPage.h"
#include "windows/onboarding/ReadyPage.h"
#include "windows/onboarding/StepChange.h"
#include "windows/onboarding/StepHeader.h"
#include "windows/onboarding/WelcomePage.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr int kCloseInset = 13;
constexpr double kChangeResponse = 0.30; ///< seconds

StepChange changeOf(double progress, bool isBack, const NotchAppearance &appearance)
{
    StepChange change{.progress = progress, .isBack = isBack};
    if (appearance.reducesMotion())
        change.travel = 0;
    return change;
}

bool isReturn(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

OnboardingView::OnboardingView(const ControlContext &context, const OnboardingSurroundings &around, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_around(around)
    , m_change(context, 1, [this] { arrange(); })
    , m_footer(makeChild<OnboardingFooter>(this, context))
{
    setFixedSize(onboarding::kContent);
    m_footer.move(0, onboarding::kPage.height());
    auto &close = makeChild<GlyphButton>(
        this, context, GlyphButton::Content{.symbol = QStringLiteral("xmark"), .help = QStringLiteral("Close")});
    close.move(width() - kCloseInset - close.width(), kCloseInset);
    connect(&close, &QAbstractButton::clicked, this, &OnboardingView::closeRequested);
    connect(&m_footer, &OnboardingFooter::backPressed, this, &OnboardingView::goBack);
    connect(&m_footer, &OnboardingFooter::continuePressed, this, &OnboardingView::goOn);
    makePage();
    arrange();
}

void OnboardingView::goOn()
{
    if (m_step == onboarding::kSteps - 1)
        Q_EMIT finished();
    else
        goTo(m_step + 1);
}

void OnboardingView::goBack()
{
    if (m_step > 0)
        goTo(m_step - 1);
}

void OnboardingView::goTo(int step)
{
    keepPicture();
    QWidget &leaving = *m_page;
    m_from = std::exchange(m_step, step);
    makePage().show();
    moveFocus();
    leaving.hide();
    leaving.deleteLater();
    m_change.jumpTo(0);
    m_change.animateTo(1, Motion::damped(kChangeResponse));
    arrange();
}

QWidget &OnboardingView::makePage()
{
    switch (m_step) {
    case 0:
        m_page = &makeChild<WelcomePage>(this, m_context);
        break;
    case 1:
        m_page = &makeChild<ReachPage>(this, m_context, m_around.scheduler);
        break;
    case 2:
        m_page = &makeChild<ToolTour>(this, m_context, m_around.settings, m_around.scheduler, m_tour);
        break;
    case 3:
        m_page = &makeChild<LookPage>(this, m_context, m_around.settings);
        break;
    default:
        m_page = &makeChild<ReadyPage>(this, m_context, m_around.shortcuts);
        break;
    }
    m_page->resize(onboarding::kPage);
    m_page->lower(); // below the close button, and before it and the footer for Tab
    m_fade = &makeChild<ContentFade>(m_page);
    m_fade->setEnabled(false);
    m_page->setGraphicsEffect(m_fade);
    for (QAbstractButton *button : m_page->findChildren<QAbstractButton *>())
        button->installEventFilter(this);
    QWidget *before = this;
    for (QWidget *control : m_page->findChildren<QWidget *>()) {
        if ((control->focusPolicy() & Qt::TabFocus) != 0) {
            setTabOrder(before, control);
            before = control;
        }
    }
    return *m_page;
}

/// Before the earlier page goes: the toolkit would look for another place by itself. A screen reader tells of nothing
/// but the focus, which would stay on the same button from step to step. While one listens it goes to the title of the
/// page instead, where Return and Space still continue.
void OnboardingView::moveFocus()
{
    const QWidget *focused = focusWidget();
    if (QAccessible::isActive()) {
        QWidget *title = m_page->findChild<StepHeader *>();
        (title != nullptr ? title : m_page)->setFocus(Qt::OtherFocusReason);
    } else if (focused == nullptr || !m_footer.isAncestorOf(focused) || m_step == 0) {
        m_footer.continueButton().setFocus(Qt::OtherFocusReason);
    }
}

/// Of the page that is about to leave, as far as it had come.
void OnboardingView::keepPicture()
{
    m_leavingStrength = changeOf(m_change.value(), m_step < m_from, m_context.appearance).enteringOpacity();
    m_fade->setEnabled(false);
    const double ratio = devicePixelRatioF();
    m_leaving = QPixmap((QSizeF(m_page->size()) * ratio).toSize());
    m_leaving.setDevicePixelRatio(ratio);
    m_leaving.fill(Qt::transparent);
    m_page->render(&m_leaving, {}, {}, QWidget::DrawChildren);
}

void OnboardingView::arrange()
{
    const StepChange change = changeOf(m_change.value(), m_step < m_from, m_context.appearance);
    const bool isMoving = m_change.isMoving();
    m_footer.showSteps(m_from, m_step, m_change.value());
    if (!isMoving)
        m_leaving = {};
    m_page->move(isMoving ? static_cast<int>(std::lround(change.enteringX())) : 0, 0);
    m_fade->setLook(change.enteringOpacity(), m_page->rect());
    m_fade->setEnabled(isMoving);
    update(m_page->rect());
}

bool OnboardingView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && isReturn(static_cast<const QKeyEvent &>(*event))) {
        keyPressEvent(static_cast<QKeyEvent *>(event));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void OnboardingView::keyPressEvent(QKeyEvent *event)
{
    // The title of a step can have the focus, and Space stays the button's that had it before.
    if (!isReturn(*event) && event->key() != Qt::Key_Space)
        QWidget::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        goOn();
}

void OnboardingView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_footer.continueButton().setFocus(Qt::OtherFocusReason);
}

void OnboardingView::paintEvent(QPaintEvent *)
{
    if (m_leaving.isNull())
        return;
    const StepChange change = changeOf(m_change.value(), m_step < m_from, m_context.appearance);
    QPainter painter(this);
    painter.setOpacity(change.leavingOpacity() * m_leavingStrength);
    painter.drawPixmap(QPointF(change.leavingX(), 0), m_leaving);
}

} // namespace ostrelle
