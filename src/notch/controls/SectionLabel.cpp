#include "notch/controls/SectionLabel.h"

#include "notch/NotchAppearance.h"

namespace ostrelle {

SectionLabel::SectionLabel(const ControlContext &context, const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setFont(Theme::font(FontRole::SectionLabel));
    const auto apply = [this, &appearance = context.appearance] {
        QPalette colors = palette();
        colors.setColor(QPalette::WindowText, appearance.palette().text3);
        setPalette(colors);
    };
    connect(&context.appearance, &NotchAppearance::changed, this, apply);
    apply();
}

} // namespace ostrelle
