# The target `package`: a Debian package of what `cmake --install` installs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_NAME sonvara)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Sonvara developers <maintainers@sonvara.app>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "radio DJ for the music that plays on your desktop")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Sonvara sits in the tray, notices when a music player begins a new track,
lowers the player, says a word about the track, and gives the volume back.
It knows every player that speaks MPRIS. The lines can be written by a
command-line AI tool that you have installed and signed in to.")

# The libraries come from the program itself; the voice is a service, which no library depends on.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
  "speech-dispatcher, speech-dispatcher-espeak-ng, speech-dispatcher-audio-plugins")
# A session bus, the part of Qt for Wayland, and a tray: the extension is for GNOME, which has none of its own.
set(trays gnome-shell-extension-appindicator plasma-workspace xfce4-panel mate-panel cinnamon lxqt-panel lxpanel
  budgie-core waybar sway i3-wm polybar tint2 trayer stalonetray)
list(JOIN trays " | " trays)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus, qt6-wayland, ${trays}")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "audacious | strawberry | vlc | mpv-mpris | rhythmbox")

include(CPack)
