#pragma once

#include "notch/Theme.h"
#include "notch/controls/NotchButton.h"

#include <QMarginsF>

namespace ostrelle {

/// A quiet button: symbol, text or both, on a fill that is only there under the pointer or while it is switched on.
class SoftButton : public NotchButton
{
    Q_OBJECT
public:
    /// What it stands on at rest.
    enum class Ground { Clear, Tinted };
    /// Its colour: that of text, stronger under the pointer, or the accent.
    enum class Tone { Text, Accent };

    struct Content
    {
        QString symbol = {}; ///< may be empty
        QString text = {};   ///< may be empty
        QString help = {};
        double symbolSize = 12;
        double radius = 8;
        QMarginsF padding{8, 4, 8, 4};
        Ground ground = Ground::Clear;
        FontRole font = FontRole::BodyMedium;
    };

    SoftButton(const ControlContext &context, Content content, QWidget *parent);

    void setSymbol(const QString &symbol);
    void setTone(Tone tone);
    /// The text, which is the accessible name as well.
    void setLabel(const QString &text);
    QSize sizeHint() const override;

protected:
    double cornerRadius() const override { return m_content.radius; }
    void paintEvent(QPaintEvent *event) override;

private:
    double symbolWidth() const;

    Content m_content;
    Tone m_tone = Tone::Text;
};

} // namespace ostrelle
