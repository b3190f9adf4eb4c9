#pragma once

#include "windows/ThemeSwatch.h"
#include "windows/controls/WrappedText.h"

#include <QWidget>

#include <vector>

namespace ostrelle {

/// All themes, in as many columns as fit.
class ThemeGrid : public QWidget
{
    Q_OBJECT
public:
    ThemeGrid(const ControlContext &context, QWidget *parent);

    void showTheme(NotchTheme theme);
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return {0, heightForWidth(kUnbroken)}; }

Q_SIGNALS:
    void chosen(NotchTheme theme);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    int columns(int width) const;

    std::vector<ThemeSwatch *> m_swatches; ///< children
};

} // namespace ostrelle
