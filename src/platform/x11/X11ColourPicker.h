#pragma once

#include "platform/ColourPicker.h"

#include <memory>

namespace ostrelle {

class PortalColourPicker;
class Screens;
class TaskScheduler;
class X11Loupe;
class X11RawPointer;

/// Opens loupes, one at a time; where the screen or its user's hands cannot be had, the desktop's own picker.
class X11ColourPicker final : public QObject, public ColourPicker
{
    Q_OBJECT
public:
    X11ColourPicker(const Screens &screens, X11RawPointer &rawPointer, TaskScheduler &scheduler,
                    QObject *parent = nullptr);
    ~X11ColourPicker() override;

    /// For a server that shows programs their own windows only, and takes no hands from others.
    void useOnlyThePortal() { m_hasLoupe = false; }

    bool pick(QObject *context, Handlers handlers) override;

Q_SIGNALS:
    /// The loupe is about to ask for pointer and keyboard: what this program holds of them should be free.
    void opening();

private:
    bool openLoupe();
    void openPortal();
    void gather(const PickedColour &colour);
    void end(std::optional<PickedColour> colour);

    const Screens &m_screens;
    X11RawPointer &m_rawPointer;
    TaskScheduler &m_scheduler;
    bool m_hasLoupe = true;
    Handlers m_handlers;
    QMetaObject::Connection m_contextGone;
    std::unique_ptr<X11Loupe> m_loupe;
    std::unique_ptr<PortalColourPicker> m_portal;
};

} // namespace ostrelle
