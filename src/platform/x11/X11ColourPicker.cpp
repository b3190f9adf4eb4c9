#include "platform/x11/X11ColourPicker.h"

#include "platform/Screens.h"
#include "platform/freedesktop/PortalColourPicker.h"
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
    if (m_loupe || m_portal) {
        return false;
    }
    if (!m_hasLoupe) {
        openPortal();
    } else if (!openLoupe()) {
        return false;
    }
    closePopups();
    Q_EMIT opening();
    m_handlers = std::move(handlers);
    m_contextGone = connect(context, &QObject::destroyed, this, [this] {
        m_handlers = {};
        m_loupe.reset();
        m_portal.reset();
    });
    return true;
}

bool X11ColourPicker::openLoupe()
{
    m_loupe = X11Loupe::open(m_screens, m_rawPointer, m_scheduler,
                             {.gathered = [this](const PickedColour &colour) { gather(colour); },
                              .ended =
                                  [this](X11Loupe::Ending ending, std::optional<PickedColour> colour) {
                                      m_loupe.reset();
                                      if (ending == X11Loupe::Ending::Unavailable) {
                                          openPortal();
                                      } else {
                                          end(colour);
                                      }
                                  }});
    return m_loupe != nullptr;
}

void X11ColourPicker::openPortal()
{
    m_portal = std::make_unique<PortalColourPicker>([this](std::optional<PickedColour> colour) {
        m_portal.release()->deleteLater();
        end(colour);
    });
}

void X11ColourPicker::gather(const PickedColour &colour)
{
    // A copy: the context, and the handlers with it, may go inside.
    if (const auto gathered = m_handlers.gathered) {
        gathered(colour);
    }
}

void X11ColourPicker::end(std::optional<PickedColour> colour)
{
    disconnect(m_contextGone);
    // Another one may be opened from inside.
    const Handlers handlers = std::exchange(m_handlers, {});
    handlers.finished(colour);
}

} // namespace ostrelle
