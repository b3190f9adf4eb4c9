#include "platform/x11/X11ColourPicker.h"

#include "platform/Screens.h"
#include "platform/x11/X11Loupe.h"

#include <QApplication>
#include <QWidget>

#include <utility>

namespace ostrelle {

namespace {

/// Open menus of this program hold the pointer and the keyboard.
void closePopups()
{
    while (QWidget *popup = QApplication::activePopupWidget()) {
        if (!popup->close()) {
            return;
        }
    }
}

} // namespace

X11ColourPicker::X11ColourPicker(const Screens &screens, X11RawPointer &rawPointer, TaskScheduler &scheduler,
                                 QObject *parent)
    : QObject(parent)
    , m_screens(screens)
    , m_rawPointer(rawPointer)
    , m_scheduler(scheduler)
{
}

X11ColourPicker::~X11ColourPicker() = default;

bool X11ColourPicker::pick(QObject *context, Handlers handlers)
{
    if (m_loupe) {
        return false;
    }
    m_loupe = X11Loupe::open(m_screens, m_rawPointer, m_scheduler,
                             {.gathered = [this](const PickedColour &colour) { m_handlers.gathered(colour); },
                              .ended = [this](X11Loupe::Ending, std::optional<PickedColour> colour) { end(colour); }});
    if (!m_loupe) {
        return false;
    }
    closePopups();
    Q_EMIT opening();
    m_handlers = std::move(handlers);
    m_contextGone = connect(context, &QObject::destroyed, this, [this] {
        m_handlers = {};
        m_loupe.reset();
    });
    return true;
}

void X11ColourPicker::end(std::optional<PickedColour> colour)
{
    disconnect(m_contextGone);
    m_loupe.reset();
    // The next loupe may be opened from inside.
    const Handlers handlers = std::exchange(m_handlers, {});
    handlers.finished(colour);
}

} // namespace ostrelle
