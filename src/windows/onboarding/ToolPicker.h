#pragma once

#include "notch/controls/NotchButton.h"
#include "records/KestroModule.h"

#include <QWidget>

#include <vector>

namespace ostrelle {

/// A row with the symbols of all tools, of which one is chosen. One stop for Tab; arrow keys choose.
class ToolPicker : public QWidget
{
    Q_OBJECT
public:
    ToolPicker(const ControlContext &context, QWidget *parent);

    /// Shows a choice that was not the user's doing: nothing is emitted.
    void showTool(KestroModule module);

Q_SIGNALS:
    /// By pointer, key or assistive technology, the one on show included.
    void picked(KestroModule module);

private:
    class Button;

    std::vector<Button *> m_buttons; ///< children
};

} // namespace ostrelle
