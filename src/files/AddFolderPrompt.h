#pragma once

#include "notch/controls/ControlContext.h"

#include <QWidget>

namespace ostrelle {

class FilledButton;

/// What stands in the well of the empty list of projects: what to do, and a button that does it.
class AddFolderPrompt : public QWidget
{
    Q_OBJECT
public:
    AddFolderPrompt(const ControlContext &context, QWidget *parent);

    FilledButton &button() { return m_button; }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int top() const;

    ControlContext m_context;
    FilledButton &m_button;
};

} // namespace ostrelle
