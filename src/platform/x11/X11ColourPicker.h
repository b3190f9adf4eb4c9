#pragma once

#include "platform/ColourPicker.h"

#include <memory>

namespace ostrelle {

class Screens;
class TaskScheduler;
class X11Loupe;
class X11RawPointer;

/// Opens loupes, one at a time.
class X11ColourPicker final : public QObject, public ColourPicker
{
    Q_OBJECT
public:
    X11ColourPicker(const Screens &screens, X11RawPointer &rawPointer, TaskScheduler &scheduler,
                    QObject *parent = nullptr);
    ~X11ColourPicker() override;

    bool pick(QObject *context, Handlers handlers) override;

Q_SIGNALS:
    /// The loupe is about to ask for pointer and keyboard: what this program holds of them should be free.
    void opening();

private:
    void end(std::optional<PickedColour> colour);

    const Screens &m_screens;
    X11RawPointer &m_rawPointer;
    TaskScheduler &m_scheduler;
    Handlers m_handlers;
    QMetaObject::Connection m_contextGone;
    std::unique_ptr<X11Loupe> m_loupe;
};

} // namespace ostrelle
