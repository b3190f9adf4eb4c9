# The Debian 12 packages of each purpose. Sourced by run and test.
build_packages=(
  cmake ninja-build ccache g++ pkg-config
  qt6-base-dev libgl-dev libsimdjson-dev libbenchmark-dev
  libxcb1-dev libxcb-xfixes0-dev libxcb-shape0-dev libxcb-randr0-dev libxcb-xinput-dev libxcb-shm0-dev
  libxcb-composite0-dev libxcb-render0-dev libxcb-res0-dev libxcb-icccm4-dev libxcb-xkb-dev libxcb-xtest0-dev
  libx11-dev libxkbcommon-dev libxkbcommon-x11-dev
  libjpeg-dev libpng-dev libtiff-dev libwebp-dev libgif-dev liblcms2-dev libtag1-dev libseccomp-dev
  libmpg123-dev libpulse-dev libswresample-dev
  libavformat-dev libavcodec-dev libswscale-dev libavutil-dev libpoppler-glib-dev librsvg2-dev libraw-dev libheif-dev
  libjxl-dev librsvg2-bin libsndfile1-dev libkissfft-dev libsoxr-dev nlohmann-json3-dev libcurl4-openssl-dev
)
run_packages=(
  libqt6svg6 fonts-inter fonts-jetbrains-mono shared-mime-info adwaita-icon-theme
  hicolor-icon-theme xdg-utils file ca-certificates
)
tour_packages=(
  xvfb xauth openbox picom dbus at-spi2-core xdotool wmctrl xclip imagemagick x11-utils x11-xserver-utils xterm
  python3 python3-gi gir1.2-gtk-3.0 python3-pyatspi procps ffmpeg chromium
  pulseaudio pulseaudio-utils
)
test_packages=(
  clang clang-format clang-tidy x11-xkb-utils xfwm4 psmisc util-linux strace libvips-tools libgdk-pixbuf2.0-bin
  qt6-image-formats-plugins libheif-examples libavif-bin libjxl-tools sox lame flac vorbis-tools opus-tools speex
  desktop-file-utils dpkg-dev lintian appstream openssl libglib2.0-bin systemd mandoc man-db zsh fish
)
