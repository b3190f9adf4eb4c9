#pragma once

#include "platform/PointerNear.h"

#include <QPoint>

namespace ostrelle {

class Screens;
class X11PanelWindow;
class X11RawPointer;

class X11PointerNear final : public PointerNear
{
    Q_OBJECT
public:
    X11PointerNear(X11RawPointer &pointer, const X11PanelWindow &panel, const Screens &screens,
                   QObject *parent = nullptr);

    Answer isWithin(const QRectF &rect) const override;
    std::optional<QString> screen() const override;
    void watchScreen(bool on) override;

private:
    std::optional<QString> screenAt(const QPoint &native) const;
    void settle();

    X11RawPointer &m_pointer;
    const X11PanelWindow &m_panel;
    const Screens &m_screens;
    std::optional<QString> m_lastScreen;
    bool m_isWatching = false;
    bool m_isSettling = false;
};

} // namespace ostrelle
