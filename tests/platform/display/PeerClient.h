#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QMap>
#include <QPoint>
#include <QRect>

#include <memory>

#include <xcb/xcb.h>

namespace ostrelle {

/// Another program on the same X server, and the hands of its user (XTEST). Every call is done, as far as the server is
/// concerned, on return.
class PeerClient
{
public:
    enum class Kind { Managed, Dialog, OverrideRedirect };

    PeerClient();
    ~PeerClient();
    PeerClient(const PeerClient &) = delete;
    PeerClient &operator=(const PeerClient &) = delete;

    /// False when none answers within 30 s.
    bool waitForWindowManager();

    /// Maps a window and waits until it is viewable. `name` is its class, and stands for the application's process.
    xcb_window_t open(const QRect &frame, Kind kind, const QByteArray &name = "peer");
    void paint(xcb_window_t window, const QImage &image);
    void close(xcb_window_t window);
    /// The server ends the connection of whoever made the topmost window, as xkill does.
    void killOwnerOfTopmost();
    /// The user chooses the window, as in a taskbar.
    void activate(xcb_window_t window);
    /// Reserves a strip at the top of the desktop between two columns.
    xcb_window_t openTopBar(int height, int fromX, int toX);
    void ownSelection(const char *name);

    void movePointer(const QPoint &native);
    void button(bool down, int number = 1);
    void click(int number = 1);
    void key(xcb_keysym_t keysym);
    void key(xcb_keysym_t keysym, bool down);

    /// Presses that the window has received so far.
    int pressCount(xcb_window_t window);
    void setFocus(xcb_window_t window);
    xcb_window_t focus();
    xcb_window_t activeWindow();
    QByteArray propertyName(xcb_window_t window, const char *property); ///< name of its first atom
    bool hasProperty(xcb_window_t window, const char *property);
    bool isAbove(xcb_window_t one, xcb_window_t other); ///< they, or the frames they are in
    QRect boundingExtents(xcb_window_t window);
    void watchShape(xcb_window_t window);
    /// Of the watched window without a shape of its own, as the server has told latest; -1: not yet.
    int toldHeight();
    QRect frame(xcb_window_t window); ///< on the root window
    bool hasOwner(const char *selection);
    QRgb pixel(const QPoint &native); ///< what the screen shows there
    void setWords(xcb_window_t window, const char *property, std::initializer_list<std::uint32_t> words);
    void remove(xcb_window_t window, const char *property);
    /// Takes it; false when somebody else has it.
    bool grabKeyboard();
    void releaseKeyboard();
    /// Takes the pointer; false when somebody else has it.
    bool grabPointer();
    void releasePointer();
    xcb_connection_t *xcb() const { return m_connection.get(); }
    xcb_window_t root() const { return m_screen->root; }

private:
    struct Disconnected
    {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };
    xcb_atom_t atom(const char *name);
    xcb_window_t topLevel(xcb_window_t window);
    void synchronize();
    void readEvents();
    xcb_window_t createHelperWindow();
    void askForFrameExtents(xcb_window_t window);
    /// What the window manager was asked for so far is done.
    void letTheWindowManagerFinish();

    std::unique_ptr<xcb_connection_t, Disconnected> m_connection;
    const xcb_screen_t *m_screen;
    QMap<xcb_window_t, int> m_presses;
    int m_toldHeight = -1;
    QList<xcb_window_t> m_managed; ///< open windows that the window manager knows
};

} // namespace ostrelle
