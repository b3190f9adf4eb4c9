#include "platform/x11/X11Platform.h"

#include "foundation/SystemTaskScheduler.h"
#include "platform/freedesktop/DesktopFileOpening.h"
#include "platform/freedesktop/NoHaptics.h"
#include "platform/freedesktop/PortalAppearance.h"
#include "platform/freedesktop/PortalFileChooser.h"
#include "platform/freedesktop/PortalHotKeys.h"
#include "platform/freedesktop/ThemeFileIcons.h"
#include "platform/x11/DisplayLoss.h"
#include "platform/x11/ToolkitConnection.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11AlertSound.h"
#include "platform/x11/X11ClipboardPort.h"
#include "platform/x11/X11ColourPicker.h"
#include "platform/x11/X11DragOut.h"
#include "platform/x11/X11DragSense.h"
#include "platform/x11/X11DragText.h"
#include "platform/x11/X11FileDrags.h"
#include "platform/x11/X11Frontmost.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11IconTheme.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11OrdinaryWindows.h"
#include "platform/x11/X11OutsideActivity.h"
#include "platform/x11/X11PanelHost.h"
#include "platform/x11/X11PointerNear.h"
#include "platform/x11/X11Popups.h"
#include "platform/x11/X11RawPointer.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/Xwayland.h"

#include <QString>

namespace ostrelle {

struct X11Platform::Services
{
    Services(std::unique_ptr<WatchConnection> connection, const QString &keeperPath);

    SystemTaskScheduler scheduler;
    std::unique_ptr<WatchConnection> watch;
    DisplayLoss displayLoss;
    X11RawPointer rawPointer;
    X11Screens screens;
    X11PanelHost panelHost;
    X11Popups popups;
    X11OutsideActivity outsideActivity;
    X11PointerNear pointerNear;
    X11DragSense dragSense;
    X11FileDrags fileDrags;
    X11DragOut dragOut;
    X11DragText dragText;
    X11Frontmost frontmost;
    X11ClipboardPort clipboard;
    PortalAppearance appearance;
    ThemeFileIcons fileIcons;
    X11IconTheme iconTheme;
    DesktopFileOpening fileOpening;
    PortalFileChooser fileChooser;
    X11ColourPicker colourPicker;
    NoHaptics haptics;
    X11AlertSound alertSound;
    X11Keyboard keyboard;
    std::unique_ptr<HotKeys> hotKeys;
    X11OrdinaryWindows ordinaryWindows;
    bool isGuest;
};

X11Platform::Services::Services(std::unique_ptr<WatchConnection> connection, const QString &keeperPath)
    : watch(std::move(connection))
    , rawPointer(*watch)
    , screens(*watch)
    , panelHost(*watch)
    , outsideActivity(*watch, rawPointer)
    , pointerNear(rawPointer, panelHost.window(), screens)
    , dragSense(*watch, rawPointer)
    , fileDrags(*watch, scheduler, rawPointer, panelHost)
    , dragOut(scheduler, rawPointer)
    , dragText(*watch, scheduler)
    , frontmost(*watch, scheduler)
    , clipboard(*watch, frontmost, scheduler, keeperPath)
    , iconTheme(*watch)
    , fileChooser(scheduler, clipboard)
    , colourPicker(screens, rawPointer, scheduler)
    , alertSound(*watch)
    , keyboard(*watch, scheduler)
    , ordinaryWindows(*watch)
    , isGuest(isXwayland(watch->xcb(), watch->root()))
{
    QObject::connect(&iconTheme, &X11IconTheme::changed, &iconTheme,
                     [this](const QString &name) { fileIcons.setTheme(name); });
    QObject::connect(watch.get(), &WatchConnection::lost, watch.get(), [this] { displayLoss.end(); });
    if (isGuest) {
        hotKeys = std::make_unique<PortalHotKeys>(keyboard);
        colourPicker.useOnlyThePortal();
    } else {
        auto grabs = std::make_unique<X11HotKeys>(*watch, keyboard);
        QObject::connect(&colourPicker, &X11ColourPicker::opening, grabs.get(), &X11HotKeys::yieldKeyboard);
        hotKeys = std::move(grabs);
    }
    watch->flush();
}

std::unique_ptr<Platform> X11Platform::create(const QString &keeperPath)
{
    std::unique_ptr<WatchConnection> watch = WatchConnection::open();
    if (!watch || !toolkitConnection()) {
        return nullptr;
    }
    return std::make_unique<X11Platform>(std::make_unique<Services>(std::move(watch), keeperPath));
}

X11Platform::X11Platform(std::unique_ptr<Services> services)
    : m_services(std::move(services))
{
}

X11Platform::~X11Platform() = default;

PanelHost &X11Platform::panelHost()
{
    return m_services->panelHost;
}

Popups &X11Platform::popups()
{
    return m_services->popups;
}

OutsideActivity &X11Platform::outsideActivity()
{
    return m_services->outsideActivity;
}

PointerNear &X11Platform::pointerNear()
{
    return m_services->pointerNear;
}

DragSense &X11Platform::dragSense()
{
    return m_services->dragSense;
}

FileDrags &X11Platform::fileDrags()
{
    return m_services->fileDrags;
}

DragOut &X11Platform::dragOut()
{
    return m_services->dragOut;
}

DragText &X11Platform::dragText()
{
    return m_services->dragText;
}

ClipboardPort &X11Platform::clipboard()
{
    return m_services->clipboard;
}

Frontmost &X11Platform::frontmost()
{
    return m_services->frontmost;
}

Screens &X11Platform::screens()
{
    return m_services->screens;
}

DesktopAppearance &X11Platform::appearance()
{
    return m_services->appearance;
}

FileIcons &X11Platform::fileIcons()
{
    return m_services->fileIcons;
}

FileOpening &X11Platform::fileOpening()
{
    return m_services->fileOpening;
}

FileChooser &X11Platform::fileChooser()
{
    return m_services->fileChooser;
}

ColourPicker &X11Platform::colourPicker()
{
    return m_services->colourPicker;
}

Haptics &X11Platform::haptics()
{
    return m_services->haptics;
}

AlertSound &X11Platform::alertSound()
{
    return m_services->alertSound;
}

KeyboardLayout &X11Platform::keyboardLayout()
{
    return m_services->keyboard;
}

HotKeys &X11Platform::hotKeys()
{
    return *m_services->hotKeys;
}

OrdinaryWindows &X11Platform::ordinaryWindows()
{
    return m_services->ordinaryWindows;
}

bool X11Platform::isGuest() const
{
    return m_services->isGuest;
}

void X11Platform::setDisplayLostHandler(std::function<void()> handler)
{
    m_services->displayLoss.setHandler(std::move(handler));
}

} // namespace ostrelle
