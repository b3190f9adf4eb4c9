#pragma once

#include "notch/ModuleTile.h"
#include "notch/controls/AnimatedNumber.h"

#include <QList>
#include <QWidget>

#include <vector>

namespace ostrelle {

class ToolRegistry;

/// The row of all active tools. One strip serves every state of the notch: its marks travel and become the tiles. It
/// can take the focus as a whole, without a ring; arrows then go to its tiles.
class ModuleStrip : public QWidget
{
    Q_OBJECT
public:
    ModuleStrip(const ControlContext &context, ToolRegistry &registry, QWidget *parent);

    void setModules(const QList<KestroModule> &modules);
    /// The tool that is shown; choosing it again does nothing.
    void setActive(std::optional<KestroModule> module);
    void setLook(const StripLook &look);

    const std::vector<ModuleTile *> &tiles() const { return m_tiles; }

Q_SIGNALS:
    void selected(KestroModule module);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    std::optional<int> indexOf(std::optional<KestroModule> module) const;
    void focusTile(int index);
    void arrange();

    ControlContext m_context;
    ToolRegistry &m_registry;
    std::vector<ModuleTile *> m_tiles; ///< children
    std::optional<KestroModule> m_active;
    StripLook m_look;
    AnimatedNumber m_platePlace; ///< index of the tile under the sliding plate
    QPointF m_centre;            ///< in the strip's own coordinates
};

} // namespace ostrelle
