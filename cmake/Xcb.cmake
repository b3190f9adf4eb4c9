# The xcb libraries of the X11 backend, and what reads its keyboard maps, as one imported target.
find_package(PkgConfig REQUIRED)
pkg_check_modules(
  XCB
  REQUIRED
  IMPORTED_TARGET
  xcb
  xcb-xfixes
  xcb-shape
  xcb-randr
  xcb-xinput
  xcb-shm
  xcb-composite
  xcb-render
  xcb-res
  xcb-icccm
  xcb-xkb
  xkbcommon
  xkbcommon-x11)
