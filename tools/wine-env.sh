# Source this before Windows programs are run:  . tools/wine-env.sh PREFIX
# It makes the Wine prefix where it is missing and keeps one server up, else each start costs seconds.

export WINEPREFIX=$1
export WINEDEBUG=-all                      # no chatter, no hint that 32-bit Wine is missing
export WINEDLLOVERRIDES="mscoree=;mshtml=" # no installer prompts for Mono and Gecko
export LC_ALL=C.UTF-8                      # names that are not ASCII reach the disk as UTF-8
unset DISPLAY WAYLAND_DISPLAY              # a dialog would wait for ever: nothing here shows a window

if [ ! -f "$WINEPREFIX/system.reg" ]; then
    mkdir -p "$WINEPREFIX"
    wineboot -i >/dev/null 2>&1 </dev/null
    wineserver -w
fi
wineserver -p >/dev/null 2>&1 </dev/null || true # it may be up already
# Services inherit the output of the first program that starts them, and would keep a pipe open.
wine cmd /c exit >/dev/null 2>&1 </dev/null
