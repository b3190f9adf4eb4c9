#pragma once

#include <QColor>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <memory>

namespace ostrelle {

class ColourPicker;
class DragOut;
class DragSense;
class FileDrags;
class HotKeys;
class KeyboardLayout;
class OutsideActivity;
class PanelHost;
class PointerNear;
class Popups;
class Screens;

/// A desktop with a user, as the contracts of the platform's services see them. One executable of the tests has the
/// fakes behind it, the other one the X11 backend on a real server; the contracts are the same.
class ContractDesktop
{
public:
    static std::unique_ptr<ContractDesktop> make();
    virtual ~ContractDesktop() = default;

    virtual PanelHost &panelHost() = 0;
    virtual Popups &popups() = 0;
    virtual OutsideActivity &outsideActivity() = 0;
    virtual PointerNear &pointerNear() = 0;
    virtual DragSense &dragSense() = 0;
    virtual FileDrags &fileDrags() = 0;
    virtual DragOut &dragOut() = 0;
    virtual Screens &screens() = 0;
    virtual ColourPicker &colourPicker() = 0;
    virtual HotKeys &hotKeys() = 0;
    virtual KeyboardLayout &keyboardLayout() = 0;

    /// The user's doings; all are done, as far as the desktop is concerned, on return.
    virtual void movePointer(const QPointF &panelPosition) = 0;
    virtual void movePointerToScreen(const QString &name) = 0;
    /// Fills the desktop with these colours, side by side.
    virtual void showColours(const QList<QColor> &colours) = 0;
    /// Moves the pointer onto a colour that is shown.
    virtual void pointAt(const QColor &colour) = 0;
    /// Presses and releases the button with Shift held.
    virtual void clickWithShift() = 0;
    virtual bool showsLoupe() = 0;
    virtual void pressButton() = 0;
    virtual void releaseButton() = 0;
    virtual void pressKey(Qt::Key key) = 0;
    /// Presses and releases the button where no window of the program is.
    virtual void clickElsewhere() = 0;
    /// The window of another application comes to the front; its name stands for the application.
    virtual void activate(const QString &application) = 0;
    /// The held pointer drags something with data out of another program.
    virtual void beginDrag() = 0;
    /// Presses the button on files in another program, away from the panel, and begins to drag them; they follow the
    /// pointer until the button is released.
    virtual void dragFiles(const QStringList &paths) = 0;
    /// Splits the desktop into screens side by side, of these names.
    virtual void arrangeScreens(const QList<QString> &names) = 0;
    /// Presses the modifiers and the key at the place of that virtual key.
    virtual void holdKeys(quint32 keyCode, Qt::KeyboardModifiers modifiers) = 0;
    /// Keeps them down until the key has been repeated several times.
    virtual void letKeysRepeat() = 0;
    virtual void releaseKeys() = 0;
    /// Another program takes these keys for itself; later it ends.
    virtual void takeKeysElsewhere(quint32 keyCode, Qt::KeyboardModifiers modifiers) = 0;
    virtual void letKeysGoElsewhere() = 0;
    /// Another window manager takes over.
    virtual void changeWindowManager() = 0;
};

} // namespace ostrelle
