# shellcheck shell=bash
# An isolated desktop for Karvo, which does not read or change the user's session. To be sourced
# after lib.sh.

desk_password=sesame
desk_world=
desk_started=()
# NAME=VALUE pairs that `desk_start_karvo` adds to the environment of Karvo.
desk_karvo_environment=()

# Starts a program in the background, with its output in the desktop's folder.
desk_start() { # NAME COMMAND...
    local name=$1
    shift
    "$@" </dev/null >"$desk_world/$name.log" 2>&1 &
    desk_started+=($!)
    disown
}

desk_end() {
    # The reader of our output may have exited; the cleanup must continue nevertheless.
    trap "" PIPE
    local pid
    # The guard detaches itself, so find it by its executable, which is in the desktop's folder.
    for pid in /proc/[0-9]*; do
        [[ $(readlink "$pid/exe" 2>/dev/null) == "$desk_world/bin/"* ]] &&
            desk_started+=("${pid#/proc/}")
    done
    for pid in "${desk_started[@]}"; do kill -KILL "$pid" 2>/dev/null || true; done
    # A document portal of the session mounts its own folder.
    fusermount -uz "$desk_world/run/doc" 2>/dev/null || true
    rm -rf "$desk_world"
}

eventually() { # COMMAND... succeeds within 30 s
    local end=$((SECONDS + ${patience:-30}))
    until "$@"; do
        ((SECONDS < end)) || return 1
        sleep 0.1
    done
}

# Starts the session, with two displays side by side. Sets `server` to the X server's process id.
desk_begin() { # WIDTHxHEIGHT of each display
    local width=${1%x*} height=${1#*x} name module
    desk_world=$(mktemp -d)
    trap desk_end EXIT
    mkdir -p "$desk_world"/{home,run,bin,pam.d}
    chmod 700 "$desk_world/run"
    unset WAYLAND_DISPLAY XAUTHORITY
    export PATH=/usr/bin:/bin HOME=$desk_world/home XDG_RUNTIME_DIR=$desk_world/run
    export XDG_CONFIG_HOME=$HOME/.config XDG_DATA_HOME=$HOME/.local/share
    export XDG_SESSION_TYPE=x11 XDG_SESSION_ID=1 NO_AT_BRIDGE=1 ORVEL_NO_ONBOARDING=1
    for name in SESSION SYSTEM; do
        export "DBUS_${name}_BUS_ADDRESS=unix:path=$desk_world/${name,,}-bus"
        desk_start "${name,,}-bus" dbus-daemon --session --nofork --nopidfile --nosyslog \
            "--address=unix:path=$desk_world/${name,,}-bus"
        eventually test -S "$desk_world/${name,,}-bus" || fail "no message bus"
    done
    desk_start logind python3 -m dbusmock --template "$PWD/Tests/Desktop/mocks/logind.py"

    desk_start xvfb Xvfb -displayfd 3 -screen 0 "$((2 * width))x${height}x24" -nolisten tcp \
        -noreset 3>"$desk_world/display"
    # shellcheck disable=SC2034  # Used by the script that sources this file.
    server=${desk_started[-1]}
    eventually test -s "$desk_world/display" || fail "the X server did not start"
    DISPLAY=:$(<"$desk_world/display")
    export DISPLAY
    # The server has only one output to assign, but accepts both monitors.
    xrandr --setmonitor Left "$width/508x$height/286+0+0" screen >/dev/null 2>&1
    xrandr --setmonitor Right "$width/508x$height/286+$width+0" none >/dev/null 2>&1

    module="required $PWD/build/release/Tests/Desktop/libScriptedPam.so $desk_world/pam"
    printf 'password %s\n' "$desk_password" >"$desk_world/pam"
    # Karvo uses its own PAM service if that is installed, and otherwise that of the login.
    printf 'auth %s\naccount %s\n' "$module" "$module" |
        tee "$desk_world/pam.d/karvo" >"$desk_world/pam.d/login"
}

desk_window_manager() { # NAME COMMAND...
    desk_start "$@"
    eventually desk_has_window_manager || fail "$1 did not start: $(<"$desk_world/$1.log")"
}

desk_has_window_manager() {
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'
}

# Stretched over each display.
desk_wallpaper() {
    convert -size 1920x1080 gradient:'#2b3a67-#f4a988' \
        -fill '#ffe3c2' -draw 'circle 1340,470 1340,560' \
        -draw "$(hills 0 '#a0668a')" -draw "$(hills 1 '#6d4c7d')" \
        -draw "$(hills 2 '#44386b')" -draw "$(hills 3 '#251f47')" "$desk_world/wall.png"
    hsetroot -fill "$desk_world/wall.png" >/dev/null
}

hills() { # SEED COLOUR: a ridge across one display
    awk -v seed="$1" -v colour="$2" 'BEGIN {
        printf "fill %s path \"M 0,1080", colour
        for (x = 0; x <= 1920; x += 20)
            printf " L %d,%d", x, 560 + seed * 95 + 70 * sin(x / 310 + seed * 2.1) \
                + 34 * sin(x / 127 + seed * 4.7) + 9 * sin(x / 41 + seed)
        print " L 1920,1080 Z\""
    }'
}

# Sets `karvo` to its process id. It runs from its own folder, so that its guard is not confused
# with that of another session.
desk_start_karvo() {
    cp -n build/release/bin/Karvo build/release/bin/KarvoGuard "$desk_world/bin/"
    desk_start karvo env LD_PRELOAD=libpam_wrapper.so PAM_WRAPPER=1 \
        PAM_WRAPPER_SERVICE_DIR="$desk_world/pam.d" "${desk_karvo_environment[@]}" \
        "$desk_world/bin/Karvo" --login-item
    karvo=${desk_started[-1]}
    eventually desk_karvo_answers || fail "Karvo did not start: $(<"$desk_world/karvo.log")"
    eventually desk_guard >/dev/null || fail "Karvo did not start its guard"
}

# An unknown action is answered by the main loop, so the launch is complete then.
desk_karvo_answers() {
    busctl "--address=$DBUS_SESSION_BUS_ADDRESS" call com.brindlewick.karvo \
        /com/brindlewick/karvo org.freedesktop.Application ActivateAction 'sava{sv}' ready 0 0 \
        >/dev/null 2>&1
}

# Prints the guard's process id.
desk_guard() {
    local exe pid
    for exe in /proc/[0-9]*/exe; do
        [[ $(readlink "$exe" 2>/dev/null) == "$desk_world/bin/KarvoGuard" ]] || continue
        pid=${exe#/proc/}
        echo "${pid%/exe}"
        return
    done
    return 1
}

# The marker exists exactly as long as the lock.
is_locked() { [[ -e $XDG_DATA_HOME/Karvo/state.json ]]; }
is_unlocked() { ! is_locked; }

enter() { # TEXT and Return
    xdotool type --delay 20 "$1"
    xdotool key Return
}

# Opens a link of Karvo like other programs, or starts Karvo again if there is no URL.
open_karvo() { # [URL]
    "$desk_world/bin/Karvo" "$@" || fail "Karvo does not answer"
}

# Clicks like a status item host, which these desktops do not have.
click_status_item() { # X Y
    dbus-send --session --print-reply --dest="org.kde.StatusNotifierItem-$karvo-1" \
        /StatusNotifierItem org.kde.StatusNotifierItem.Activate "int32:$1" "int32:$2" >/dev/null
}

# An app with a menu entry and an icon.
app() { # NAME X Y COLOUR DRAWING...
    local name=$1 x=$2 y=$3 icon=$desk_world/$1.png
    mkdir -p "$XDG_DATA_HOME/applications"
    convert -size 64x64 xc:none -fill "$4" -draw 'roundrectangle 2,2 61,61 14,14' \
        -fill none -stroke white -strokewidth 4 -draw "$5" -draw "$6" "$icon"
    printf '%s\n' '[Desktop Entry]' Type=Application "Name=${name^}" "StartupWMClass=${name^}" \
        "Icon=$icon" "Exec=python3 $name" >"$XDG_DATA_HOME/applications/$name.desktop"
    desk_start "$name" /usr/bin/python3 Scripts/tour-app.py "$name" "$icon" "$x" "$y"
    eventually is_there "$name" || fail "$name did not appear: $(<"$desk_world/$name.log")"
}

is_there() { xdotool search --onlyvisible --classname "^$1\$" >/dev/null 2>&1; }

activate() { # NAME
    xdotool search --onlyvisible --classname "^$1\$" windowactivate
    eventually is_active "$1" || fail "$1 does not become active"
}

is_active() {
    xprop -id "$(xdotool getactivewindow 2>/dev/null)" WM_CLASS 2>/dev/null | grep -q "\"$1\""
}
