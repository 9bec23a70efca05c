# variants: none (host install cinnamon xapp-sn-watcher- removes the watcher: XEmbed only)
. /run/sessions/common.sh
[ -z "${1:-}" ] || fail "cinnamon has no variants"
desktop X-Cinnamon cinnamon x11; export XDG_DATA_DIRS=/usr/share/cinnamon:$XDG_DATA_DIRS
screen; publish
LIBGL_ALWAYS_SOFTWARE=1 CINNAMON_SOFTWARE_RENDERING=1 bg cinnamon cinnamon --replace   # starts xapp-sn-watcher itself
within 60 tray; sleep 2
for d in csd-xsettings csd-background; do p=$(ls /usr/lib/*/cinnamon-settings-daemon/$d /usr/libexec/$d /usr/bin/$d 2>/dev/null | head -1); [ -z "$p" ] || bg $d "$p"; done
portal; ready
