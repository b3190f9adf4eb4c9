# The Debian package: cpack --config BUILD/CPackConfig.cmake, once everything is built.
set(OSTRELLE_MAINTAINER "Nobody <nobody@ostrelle.invalid>" CACHE STRING "Who answers for the package: NAME <ADDRESS>")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ostrelle)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${OSTRELLE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "six small tools, just above your work")
set(CPACK_PACKAGE_DESCRIPTION
    "A black lozenge at the top centre of the screen opens into a panel of
glass with a clipboard history, colors sampled from the screen, a shelf
for files, project folders, and what is in a picture or a sound.")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${OSTRELLE_HOME_PAGE}")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

# Where the files go must be known when they are made: the entries name the command.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)

# What is linked is found out; these are found while running.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "hicolor-icon-theme, shared-mime-info")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "adwaita-icon-theme, ca-certificates, fonts-inter, fonts-jetbrains-mono, libqt6svg6, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "xdg-desktop-portal, pulseaudio | pipewire-pulse, colord")

include(CPack)
