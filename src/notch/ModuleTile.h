#pragma once

#include "notch/TilePainting.h"
#include "notch/controls/NotchButton.h"
#include "records/KestroModule.h"
#include "records/ModuleBadge.h"

#include <optional>

namespace ostrelle {

/// How the strip shows its tiles in one frame.
struct StripLook
{
    QPointF centre;         ///< of the whole strip, in the strip's parent
    double openness = 0;    ///< 0 marks of the closed notch, 1 tiles
    double content = 0;     ///< opacity of plates, captions and badges
    double toolness = 0;    ///< 0 every tile has a plate, 1 only the active one
    double peekOpacity = 0; ///< of the marks while closed

    friend bool operator==(const StripLook &, const StripLook &) = default;
};

/// One tool in the strip: a mark of the closed notch that grows into a tile with plate, caption and badge. As a mark it
/// takes no part in pointer and keyboard.
class ModuleTile : public NotchButton
{
    Q_OBJECT
public:
    ModuleTile(const ControlContext &context, KestroModule module, QWidget *parent);

    KestroModule module() const { return m_module; }
    bool isOpen() const { return m_look.openness > 0.5; }
    /// Highlighted: the tool that is shown.
    void setActive(bool active);
    void setBadge(const std::optional<ModuleBadge> &badge);
    /// `centre` is the tile's own, in its parent; fractions are respected.
    void setLook(const StripLook &look, const QPointF &centre);

Q_SIGNALS:
    /// An arrow key wants the focus moved by this many tiles.
    void focusStep(int step);

protected:
    bool isInteractive() const override { return isEnabled() && isOpen(); }
    QRectF shape() const override;
    double cornerRadius() const override;
    bool hitButton(const QPoint &position) const override;
    void nextCheckState() override {} ///< a click does not choose by itself
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void applyForm();
    QColor contentColor() const;
    TilePicture picture() const;
    void paintBadge(QPainter &painter, const QPointF &symbolTop) const;

    KestroModule m_module;
    std::optional<ModuleBadge> m_badge;
    StripLook m_look;
    QPointF m_centre;          ///< in the tile's own coordinates
    AnimatedNumber m_activity; ///< 1 for the tool that is shown
};

} // namespace ostrelle
