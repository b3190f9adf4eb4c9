"""The user's hands on the keyboard: keys by their place, whatever the layout prints on them (XTEST)."""
import ctypes

# As the Linux kernel numbers the keys of a PC board, plus 8.
CONTROL, SHIFT, ALT, SUPER = 37, 50, 64, 133
ESCAPE, SPACE, RETURN, CAPS_LOCK, NUM_LOCK, SCROLL_LOCK = 9, 65, 36, 66, 77, 78
C, F, V, Y = 54, 41, 55, 29


class Keyboard:
    """A connection of its own, so that a press costs no process."""

    def __init__(self, desktop):
        self._x11 = ctypes.CDLL("libX11.so.6")
        self._test = ctypes.CDLL("libXtst.so.6")
        self._x11.XOpenDisplay.restype = ctypes.c_void_p
        self._x11.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
        self._x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
        self._test.XTestFakeKeyEvent.argtypes = [ctypes.c_void_p, ctypes.c_uint, ctypes.c_int, ctypes.c_ulong]
        self._display = self._x11.XOpenDisplay(desktop.environment["DISPLAY"].encode())
        assert self._display, "the display can be opened"
        self._held = []

    def hold(self, *keys):
        """The last of them last; on return the server has them."""
        for key in keys:
            self._test.XTestFakeKeyEvent(self._display, key, 1, 0)
        self._held += keys
        self._x11.XSync(self._display, 0)

    def release(self):
        for key in reversed(self._held):
            self._test.XTestFakeKeyEvent(self._display, key, 0, 0)
        self._held = []
        self._x11.XSync(self._display, 0)

    def press(self, *keys):
        self.hold(*keys)
        self.release()

    def close(self):
        self.release()
        self._x11.XCloseDisplay(self._display)
