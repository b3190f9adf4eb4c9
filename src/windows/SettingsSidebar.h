#pragma once

#include "foundation/TaskScheduler.h"
#include "notch/controls/ControlContext.h"
#include "records/SettingsSection.h"

#include <QImage>
#include <QWidget>

#include <vector>

namespace ostrelle {

class SidebarRow;

/// The list of the window's sections, lit by the theme from its lower corner. One stop for Tab: arrow keys and typing
/// the start of a title choose.
class SettingsSidebar : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kWidth = 184;

    SettingsSidebar(const ControlContext &context, SettingsSection section, QWidget *parent);

    void setSection(SettingsSection section);
    void takeFocus(Qt::FocusReason reason);

Q_SIGNALS:
    void chosen(SettingsSection section);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void choose(std::size_t index);
    void chooseByTyping(const QString &text);
    std::size_t current() const;

    ControlContext m_context;
    std::vector<SidebarRow *> m_rows; ///< children
    QString m_typed;
    MonotonicTime m_lastTyped{};
    QImage m_ground; ///< null when it must be painted anew
};

} // namespace ostrelle
