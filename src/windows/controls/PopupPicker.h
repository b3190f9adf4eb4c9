#pragma once

#include "notch/controls/NotchButton.h"

#include <QStringList>

#include <memory>

namespace ostrelle {

class PickerMenu;
class Popups;

/// Shows one of several choices and opens the list of them, so that the current one lies exactly on itself. Up and Down
/// choose without the list.
class PopupPicker : public NotchButton
{
    Q_OBJECT
public:
    PopupPicker(const ControlContext &context, Popups &popups, const QStringList &choices, int width, QWidget *parent);
    ~PopupPicker() override;

    /// Shows a state that was not the user's doing: nothing is emitted. A value that is none of the choices (index -1)
    /// is shown as `text`.
    void showCurrent(int index, const QString &text = {});
    QString text() const;

Q_SIGNALS:
    void chosen(int index);

protected:
    double cornerRadius() const override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void open();
    void choose(int index);

    Popups &m_popups;
    QStringList m_choices;
    int m_current = -1;
    QString m_text;
    std::unique_ptr<PickerMenu> m_menu; ///< the latest one
};

} // namespace ostrelle
