# read by the sessions, which run as the desktop's user on a session bus of their own; $1 is the variant
bg() { local n=$1; shift; "$@" >"/tmp/session/$n.log" 2>&1 & }   # LOG CMD...: in the background
fail() { echo "$*" >/tmp/session/failed; exit 1; }
within() { local i n=$1; shift; for ((i=0; i<n*5; i++)); do "$@" >/dev/null 2>&1 && return; sleep .2; done; return 1; }   # SECONDS CMD...
owned() { dbus-send --print-reply=literal --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner "string:$1" | grep -q true; }
screen() { bg xvfb Xvfb :9 -screen 0 1280x800x24 -nolisten tcp; within 20 test -e /tmp/.X11-unix/X9 || fail "no Xvfb"; export DISPLAY=:9; }
publish() {   # the environment for the bus and for `host run`
  export -p | grep -vE ' (PWD|OLDPWD|SHLVL|_)=' >"$XDG_RUNTIME_DIR/session.env"; dbus-update-activation-environment --all; }
desktop() { export XDG_CURRENT_DESKTOP=$1 XDG_SESSION_DESKTOP=$2 DESKTOP_SESSION=$2 XDG_SESSION_TYPE=$3 XDG_DATA_DIRS=/usr/local/share:/usr/share XDG_CONFIG_DIRS=/etc/xdg; }
portal() { [ ! -x /usr/libexec/xdg-desktop-portal ] || bg portal /usr/libexec/xdg-desktop-portal; }
tray() { python3 /run/sessions/tray.py; }
ready() { sleep 3; tray >/tmp/session/ready.new; mv /tmp/session/ready.new /tmp/session/ready; wait; }
