#pragma once

#include "foundation/Task.h"
#include "inspectors/ColorForm.h"
#include "notch/ToolView.h"
#include "notch/controls/AnimatedNumber.h"

#include <QPointer>
#include <QPropertyNotifier>

#include <memory>
#include <optional>

class QKeyEvent;

namespace ostrelle {

class ActionPrompt;
class ClipboardPort;
class ColorReadout;
class ColorService;
class ColorTextField;
class ContentFade;
class GlyphButton;
class Haptics;
class NotchMenu;
class Popups;
class SwatchShelves;
class TaskScheduler;

/// The colour tool: invites to sample a colour, or shows one with its text forms; below, the colours that are kept. 1,
/// 2 and 3 copy HEX, RGB and HSL, arrow keys walk the swatches, Delete removes a favorite; what begins like a colour
/// is typed into a field, what is pasted is taken when it is one. Undo takes changes of the favorites back.
class ColorModuleView : public ToolView
{
    Q_OBJECT
public:
    struct Surroundings
    {
        ColorService &colors;
        ClipboardPort &clipboard;
        Haptics &haptics;
        Popups &popups;
        TaskScheduler &scheduler;
    };

    ColorModuleView(const Surroundings &surroundings, const ControlContext &context, QWidget *parent);
    ~ColorModuleView() override;

    std::optional<double> wantedBodyHeight() const override;
    QList<QWidget *> headerActions() override;
    void appeared() override;
    void undo() override;

    /// The colour on display.
    const std::optional<SampledColor> &current() const { return m_current; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void listen();
    void showRecent();
    void setCurrent(const SampledColor &color);
    void followLists();
    void setFocusOrder();
    void sample();
    void copy(ColorForm form);
    void copyText(const QString &text);
    void openMenu(const SampledColor &color, QWidget &anchor, const QPointF &position);
    bool handleKey(const QKeyEvent &event);
    bool handlePlainKey(const QKeyEvent &event);
    void type(const QString &text);
    void paste();
    void takePasted(const QString &text);
    void take(const SampledColor &written);
    void followField();
    void applyPage();
    void tellHeight();
    void arrange();

    Surroundings m_around;
    ControlContext m_context;
    ActionPrompt &m_prompt;
    ColorReadout &m_readout;
    SwatchShelves &m_shelves;
    ColorTextField &m_field;
    GlyphButton &m_another;
    ContentFade &m_promptFade;
    ContentFade &m_readoutFade;
    AnimatedNumber m_page; ///< 0 the prompt, 1 the readout
    std::optional<SampledColor> m_current;
    Task m_copied; ///< while a row shows its check mark
    double m_wantedHeight = 0;
    QPointer<QWidget> m_beforeField; ///< what had the focus
    std::unique_ptr<NotchMenu> m_menu;
    QPropertyNotifier m_listsWatch;
};

} // namespace ostrelle
