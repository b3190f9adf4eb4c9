#pragma once

#include "notch/controls/ControlContext.h"

#include <QString>
#include <QWidget>

namespace ostrelle {

class FilledButton;

/// What stands in an empty place that one button can fill: a symbol over a message and the button, centred.
class ActionPrompt : public QWidget
{
    Q_OBJECT
public:
    struct Content
    {
        QString symbol;
        QString message;
        QString action; ///< the button's label
        double symbolSize = 19;
    };

    ActionPrompt(const ControlContext &context, Content content, QWidget *parent);

    FilledButton &button() { return m_button; }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int top() const;
    int symbolBox() const;

    ControlContext m_context;
    Content m_content;
    FilledButton &m_button;
};

} // namespace ostrelle
