#pragma once

#include "notch/controls/ControlContext.h"
#include "records/ShortcutAction.h"

#include <QProperty>
#include <QWidget>

#include <optional>

class QKeyEvent;

namespace ostrelle {

class KeyboardLayout;
class RecorderButton;
class RemoveButton;
class ShortcutService;

/// Shows the key combination of one action, and records another one: while it does, every key of the program comes
/// here and goes nowhere else. Escape leaves things as they are, Delete takes the combination away; a key without a
/// modifier is waited out, and a combination that another action has is told and not taken.
class ShortcutRecorder : public QWidget
{
    Q_OBJECT
public:
    ShortcutRecorder(const ControlContext &context, ShortcutService &shortcuts, const KeyboardLayout &layout,
                     ShortcutAction action, QWidget *parent);
    ~ShortcutRecorder() override;

    bool isRecording() const { return m_isRecording; }
    QString label() const;
    /// What is wrong with the combination, for those who do not see the row's tooltip; empty when nothing is.
    void setProblem(const QString &problem);
    void begin();
    void stop();

    QSize sizeHint() const override;

Q_SIGNALS:
    /// Only one can have the keys: another one that records must stop now.
    void aboutToBegin();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool event(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void handleKey(const QKeyEvent &event);
    void record(const KeyCombo &combo);
    void showState();
    void arrange();
    QString conflictText() const;

    const NotchAppearance &m_appearance;
    ShortcutService &m_shortcuts;
    const KeyboardLayout &m_layout;
    ShortcutAction m_action;
    RemoveButton &m_remove;
    RecorderButton &m_button;
    bool m_isRecording = false;
    std::optional<ShortcutAction> m_conflict; ///< has what was pressed last
    QPropertyNotifier m_combosWatch;
};

} // namespace ostrelle
