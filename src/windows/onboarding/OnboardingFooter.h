#pragma once

#include "notch/controls/ControlContext.h"

#include <QWidget>

namespace ostrelle {

class PushButton;
class SoftButton;

/// The way through the steps: back, where one is, and on.
class OnboardingFooter : public QWidget
{
    Q_OBJECT
public:
    OnboardingFooter(const ControlContext &context, QWidget *parent);

    /// One step on the way to another, 0 to 1.
    void showSteps(int from, int to, double progress);
    QWidget &continueButton() const;

Q_SIGNALS:
    void backPressed();
    void continuePressed();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double shareOf(int step) const;

    ControlContext m_context;
    SoftButton &m_back;
    PushButton &m_continue;
    QWidget &m_dots; ///< what assistive technology reads for them
    int m_from = 0;
    int m_to = 0;
    double m_progress = 1;
};

} // namespace ostrelle
