#pragma once

#include <QMenu>
#include <QProxyStyle>

namespace ostrelle {

class NotchAppearance;

/// The list of choices of a PopupPicker, with a check at the current one.
class PickerMenu : public QMenu
{
    Q_OBJECT
public:
    /// Where a choice's text starts, from the menu's left edge.
    static constexpr int kTextX = 31;
    static constexpr double kRadius = 10;

    /// `current` is an index, or -1 for none.
    PickerMenu(const NotchAppearance &appearance, const QStringList &choices, int current, int width, QWidget *parent);
    ~PickerMenu() override;

    /// Top of a choice's row, from the menu's top edge.
    static int rowTop(int index);
    static int rowHeight();

Q_SIGNALS:
    void chosen(int index);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// The measures; everything is painted by the menu itself.
    class Measures : public QProxyStyle
    {
    public:
        explicit Measures(int rowWidth);
        int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
        QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                               const QWidget *widget) const override;

    private:
        int m_rowWidth;
    };

    void paintRow(QPainter &painter, QAction &action);

    const NotchAppearance &m_appearance;
    Measures m_measures;
};

} // namespace ostrelle
