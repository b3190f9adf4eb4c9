#pragma once

#include "notch/controls/NotchButton.h"

#include <QStringList>

#include <vector>

namespace ostrelle {

/// A choice between a few words, all of them on show. One stop for Tab; arrow keys, Home and End choose.
class SegmentedPicker : public NotchButton
{
    Q_OBJECT
public:
    SegmentedPicker(const ControlContext &context, const QStringList &choices, int width, QWidget *parent);

    int current() const { return m_current; }
    /// Shows a choice that was not the user's doing: nothing is emitted. It slides there while it is seen.
    void showCurrent(int index);

Q_SIGNALS:
    /// By pointer, key or assistive technology.
    void chosen(int index);

protected:
    double cornerRadius() const override;
    bool isInteractive() const override { return false; }
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    class Segment;

    void choose(int index);
    QRectF segmentRect(double index) const;

    QStringList m_choices;
    std::vector<Segment *> m_segments; ///< children
    int m_current = 0;
    AnimatedNumber m_thumb; ///< the index that it stands on
};

} // namespace ostrelle
