#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"
#include "records/KestroModule.h"

#include <QPixmap>
#include <QWidget>

namespace ostrelle {

class SwitchButton;

/// One tool in the list of tools: its symbol and name, whether the notch shows it, and a handle to drag it by.
class ToolRow : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kHeight = 56;

    ToolRow(const ControlContext &context, KestroModule module, QWidget *parent);

    KestroModule module() const { return m_module; }
    void showState(bool isShown);
    /// What has the row's keyboard focus.
    QWidget &control() const;

    /// Everything of the row but what lies behind it.
    QPixmap picture();
    /// While it is dragged only its place is there.
    void setLifted(bool isLifted);

Q_SIGNALS:
    void switched(bool isShown);

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void applyPresence();
    double strength() const;
    void paintContent(QPainter &painter) const;

    ControlContext m_context;
    KestroModule m_module;
    SwitchButton &m_switch;
    AnimatedNumber m_hover;
    AnimatedNumber m_presence; ///< pale while the tool is hidden
    bool m_isShown = true;
    bool m_isLifted = false;
    bool m_isPictured = false;
};

} // namespace ostrelle
