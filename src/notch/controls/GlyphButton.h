#pragma once

#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// A small round button that is only a symbol: 22 by 22, with a circle and a glow of the theme's colour under the
/// pointer.
class GlyphButton : public NotchButton
{
    Q_OBJECT
public:
    static constexpr int kDiameter = 22;

    /// Destructive ones turn red under the pointer and cast no glow.
    enum class Purpose { Ordinary, Destructive };

    struct Content
    {
        QString symbol;
        QString help; ///< tooltip and accessible name
        Purpose purpose = Purpose::Ordinary;
        double systemSize = 10.5;
    };

    GlyphButton(const ControlContext &context, Content content, QWidget *parent);

    QString symbol() const { return m_content.symbol; }
    void setSymbol(const QString &symbol);

    QSize sizeHint() const override { return {kDiameter, kDiameter}; }

protected:
    double cornerRadius() const override { return kDiameter / 2.0; }
    bool isGlowing() const override { return m_content.purpose == Purpose::Ordinary && hoverAmount() > 0; }
    void paintGlow(QPainter &painter) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    Content m_content;
};

} // namespace ostrelle
