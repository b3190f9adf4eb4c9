#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "records/KestroModule.h"
#include "windows/onboarding/PageCard.h"

namespace ostrelle {

class SwitchButton;

/// What one tool does, in a border of the theme's gradient, with the switch that shows or hides it. From tool to tool
/// the old words are gone before the new ones are clear.
class ToolCard : public PageCard
{
    Q_OBJECT
public:
    enum class Direction { Back, Forward };

    ToolCard(const ControlContext &context, KestroModule tool, QWidget *parent);

    void showTool(KestroModule tool, Direction direction);
    /// Whether the tool is shown in the notch.
    void showState(bool isShown);
    SwitchButton &control() const { return m_switch; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void describe();
    void paintTool(QPainter &painter, KestroModule tool, double x, double opacity) const;

    KestroModule m_tool;
    KestroModule m_leaving;
    Direction m_direction = Direction::Forward;
    SwitchButton &m_switch;
    AnimatedNumber m_change; ///< 0 the leaving tool, 1 the tool
};

} // namespace ostrelle
