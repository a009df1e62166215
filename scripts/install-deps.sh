#!/usr/bin/env bash
# Installs the Debian 12 packages Glowdeck needs to build and test. Only what is missing is installed, so a
# prepared machine pays nothing.
set -euo pipefail

packages=(
    cmake g++ make pkg-config
    qt6-base-dev qt6-svg-dev
    libsimdjson-dev libbenchmark-dev
    # the bridge simulator mints its HTTPS certificates with OpenSSL's libcrypto
    libssl-dev
    # the end-to-end test: a virtual display with a tray host, input and screenshots
    xvfb xauth xdotool trayer x11-utils x11-apps imagemagick dbus-x11 curl
    # a compositing manager, to see the windows paint with one as without
    xcompmgr
    # driving the program through its accessibility interface, as a screen reader does
    at-spi2-core python3-pyatspi
    # the drop-down window asks X11 whether a compositing manager runs; global shortcuts grab keys there
    libxcb1-dev libxcb-keysyms1-dev
    # the debug report script
    ruby
    # the panel tabs are emoji
    fonts-noto-color-emoji
    # the fuzz targets: clang with libFuzzer and the sanitizers' run-time
    clang libclang-rt-14-dev
    # the Debian package (cpack -G DEB reads dependencies with dpkg-shlibdeps and file) and its checks: the
    # desktop entry, the AppStream metadata, lintian, the manual pages
    dpkg-dev file desktop-file-utils appstream lintian man-db bsdextrautils
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then
    sudo="sudo"
fi
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
