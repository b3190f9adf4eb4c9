#pragma once

#include "notch/controls/ControlContext.h"

#include <QString>
#include <QWidget>

namespace ostrelle {

/// A row of a card: words at its beginning and something at its end.
class LabelledRow : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kPadding = 14;

    /// `end` becomes a child, as large as it wants to be; it may be null.
    LabelledRow(const ControlContext &context, const QString &label, QWidget *end, QWidget *parent);

    /// A line above it.
    void setDivided(bool isDivided);

protected:
    const NotchAppearance &appearance() const { return m_appearance; }
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const NotchAppearance &m_appearance;
    QString m_label;
    QWidget *m_end;
    bool m_isDivided = false;
};

} // namespace ostrelle
