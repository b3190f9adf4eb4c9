#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "windows/onboarding/OnboardingSurroundings.h"
#include "windows/onboarding/ToolTour.h"

#include <QPixmap>
#include <QWidget>

namespace ostrelle {

class ContentFade;
class OnboardingFooter;

/// The steps of the first run, one page at a time, with the footer that leads through them. Return goes on wherever the
/// keyboard is, but on a button that does something else.
class OnboardingView : public QWidget
{
    Q_OBJECT
public:
    OnboardingView(const ControlContext &context, const OnboardingSurroundings &around, QWidget *parent);

    int step() const { return m_step; }

Q_SIGNALS:
    /// "Get Started" on the last step.
    void finished();
    /// The button in the corner.
    void closeRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void goOn();
    void goBack();
    void goTo(int step);
    QWidget &makePage();
    void moveFocus();
    void keepPicture();
    void arrange();

    ControlContext m_context;
    OnboardingSurroundings m_around;
    int m_step = 0;
    int m_from = 0;
    AnimatedNumber m_change; ///< 0 the step before, 1 the step
    ToolTour::Progress m_tour;
    OnboardingFooter &m_footer;
    QWidget *m_page = nullptr;     ///< a child
    ContentFade *m_fade = nullptr; ///< the page's
    QPixmap m_leaving;             ///< the page before, while it is still seen
    double m_leavingStrength = 1;
};

} // namespace ostrelle
