# Source this before Windows programs are run:  . packaging/windows/wine-env.sh PREFIX
# It makes the Wine prefix where it is missing and keeps one server up, else each start costs seconds.

export WINEPREFIX=$1
export WINEDEBUG=-all                      # no chatter, no hint that 32-bit Wine is missing
export WINEDLLOVERRIDES="mscoree=;mshtml=" # no installer prompts for Mono and Gecko
export LC_ALL=C.UTF-8                      # names that are not ASCII reach the disk as UTF-8
unset DISPLAY WAYLAND_DISPLAY              # without a screen no dialog of Wine's own can wait for ever

WineQuietly() { wine "$@" >/dev/null 2>&1 </dev/null; }

if [ ! -f "$WINEPREFIX/.complete" ]; then
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    wineboot -i >/dev/null 2>&1 </dev/null
    # Qt lists the fonts of this directory only; Wine keeps its own elsewhere.
    mkdir -p "$WINEPREFIX/drive_c/windows/Fonts"
    cp /usr/share/wine/fonts/tahoma*.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
    for font in "MS Shell Dlg" "MS Shell Dlg 2" "Segoe UI"; do
        WineQuietly reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes' /v "$font" /d Tahoma /f
    done
    # Wine hands no QT_... variable of the caller's on. Without this one Qt's messages are not seen.
    WineQuietly reg add 'HKCU\Environment' /v QT_FORCE_STDERR_LOGGING /d 1 /f
    wineserver -w
    touch "$WINEPREFIX/.complete"
fi
wineserver -p >/dev/null 2>&1 </dev/null || true # it may be up already
# Services inherit the output of the first program that starts them, and would keep a pipe open.
WineQuietly cmd /c exit
