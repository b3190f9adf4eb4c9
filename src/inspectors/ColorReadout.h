#pragma once

#include "inspectors/ColorForm.h"
#include "notch/controls/ControlContext.h"

#include <QList>
#include <QWidget>

#include <array>
#include <optional>

namespace ostrelle {

class ColorValueRow;
class FilledButton;
class LargeSwatch;
class SoftButton;

/// What the colour tool shows of a colour: a large swatch, its text forms, and what can be done with it.
class ColorReadout : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kHeight = 182;

    ColorReadout(const ControlContext &context, QWidget *parent);
    ~ColorReadout() override;

    void setColor(const SampledColor &color);
    void setFavorite(bool favorite);
    /// The row of this form shows its check mark; nothing: none does.
    void setCopied(std::optional<ColorForm> form);

    /// Where the row of HEX is.
    QRect firstRow() const;
    /// Hidden, it gives its place away.
    void setFirstRowShown(bool shown);
    /// The controls in the order of the Tab key.
    QList<QWidget *> focusOrder() const;

Q_SIGNALS:
    void copyWanted(ColorForm form);
    void favoriteToggled();
    void pickWanted();
    void menuRequested(QWidget *anchor, const QPointF &position);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    LargeSwatch &m_swatch;
    SoftButton &m_heart;
    FilledButton &m_pick;
    std::array<ColorValueRow *, kAllColorForms.size()> m_rows{};
};

} // namespace ostrelle
