#!/usr/bin/env bash
# Installs the Debian 12 packages Glowdeck needs, for one purpose:
#   install-deps.sh demo   what building everything and running the demos need: build.sh, demo.sh, ctl-demo.sh
#   install-deps.sh test   that, and what only the test suite, the fuzz targets and the Debian package need
# Without an argument: test. Only what is missing is installed, so a prepared machine pays nothing. As root
# apt-get is run directly; otherwise through sudo, and without sudo the script prints the line to run as root.
set -euo pipefail

demo_packages=(
    cmake g++ make pkg-config
    qt6-base-dev qt6-svg-dev
    # lupdate and lrelease, and their CMake functions: the translations are compiled into the program
    qt6-l10n-tools qt6-tools-dev
    libsimdjson-dev
    # the benchmarks are part of the default build
    libbenchmark-dev
    # the bridge simulator mints its HTTPS certificates with OpenSSL's libcrypto
    libssl-dev
    # the drop-down window asks X11 whether a compositing manager runs; global shortcuts grab keys there
    libx11-dev libxcb1-dev libxcb-keysyms1-dev
    # the panel tabs are emoji
    fonts-noto-color-emoji
)

test_packages=(
    # the end-to-end test: a virtual display with a tray host, input and screenshots
    xvfb xauth xdotool trayer x11-utils x11-apps imagemagick dbus-x11 curl
    # a compositing manager, to see the windows paint with one as without
    xcompmgr
    # driving the program through its accessibility interface, as a screen reader does
    at-spi2-core python3-pyatspi
    # the debug report script (the Debian package only recommends Ruby)
    ruby
    # the fuzz targets: clang with libFuzzer and the sanitizers' run-time
    clang libclang-rt-14-dev
    # the Debian package (cpack -G DEB reads dependencies with dpkg-shlibdeps and file) and its checks: the
    # desktop entry, the AppStream metadata, lintian, the manual pages
    dpkg-dev file desktop-file-utils appstream lintian man-db bsdextrautils
)

case "${1:-test}" in
demo) packages=("${demo_packages[@]}") ;;
test) packages=("${demo_packages[@]}" "${test_packages[@]}") ;;
*)
    echo "usage: $0 [demo|test]" >&2
    exit 2
    ;;
esac

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
        missing+=("$package")
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

sudo=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
        echo "Glowdeck needs these Debian packages; installing them needs root, and there is no sudo." >&2
        echo "Run as root, then run this command again:" >&2
        echo "  apt-get update && apt-get install -y --no-install-recommends ${missing[*]}" >&2
        exit 1
    fi
    sudo=(sudo)
fi
echo "Installing: ${missing[*]}"
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
