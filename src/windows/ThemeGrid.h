#pragma once

#include "windows/ThemeSwatch.h"
#include "windows/controls/WrappedText.h"

#include <QMargins>
#include <QWidget>

#include <vector>

namespace ostrelle {

/// All themes, in as many columns as fit.
class ThemeGrid : public QWidget
{
    Q_OBJECT
public:
    struct Measures
    {
        QMargins padding{8, 8, 8, 6};
        int leastCell = 118; ///< width
        ThemeSwatch::Measures swatch = {};
    };

    ThemeGrid(const ControlContext &context, const Measures &measures, QWidget *parent);

    void showTheme(NotchTheme theme);
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return {0, heightForWidth(kUnbroken)}; }

Q_SIGNALS:
    void chosen(NotchTheme theme);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    int room(int width) const;
    int columns(int width) const;

    Measures m_measures;
    std::vector<ThemeSwatch *> m_swatches; ///< children
};

} // namespace ostrelle
