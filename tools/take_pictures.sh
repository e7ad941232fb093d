#!/usr/bin/env bash
# Takes the manual's pictures of screens: a day at the desk (tests/program/test_day.py) on a display of its own.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/setup.sh

install_packages "${PROGRAM_PACKAGES[@]}" xvfb imagemagick
build win64 TolvanP launch bridge

# The display names itself by the first number that is free.
rm -f build/display # an earlier run's
mkfifo build/display
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>build/display >/dev/null 2>&1 &
trap 'stop_wine; kill %1; rm -f build/display' EXIT
DISPLAY=:$(head -n 1 build/display)
export DISPLAY

# Fonts and title bars as on Windows.
use_prefix "$PWD/build/picture-prefix" "$PWD/build/test-com1" x11
cp -n /usr/share/wine/fonts/* "$WINEPREFIX/drive_c/windows/Fonts/"
start_wine
wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f </dev/null >/dev/null 2>&1
stop_wine
start_wine

mkdir -p docs/manual/pictures
TOLVAN_PICTURES=$PWD/docs/manual/pictures python3 -B tests/program -k Day
