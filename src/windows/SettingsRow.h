#pragma once

#include "notch/controls/ControlContext.h"
#include "windows/controls/WrappedText.h"

#include <QString>
#include <QWidget>

namespace ostrelle {

/// A row of a group: a title, a subtitle below it, and a control at the end, which gets both as its name and
/// description.
class SettingsRow : public QWidget
{
    Q_OBJECT
public:
    struct Content
    {
        QString title;
        QString subtitle = {};
        QString symbol = {}; ///< before both, in the accent
    };

    /// `control` becomes a child; may be null.
    SettingsRow(const ControlContext &context, Content content, QWidget *control, QWidget *parent);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return {0, heightForWidth(kUnbroken)}; }

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    double textX() const;
    WrappedText subtitle(int width) const;
    void arrange();

    const NotchAppearance &m_appearance;
    Content m_content;
    QWidget *m_control;
};

} // namespace ostrelle
