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
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://sonvara.app")
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
# apt installs what is recommended, so nothing here may bring a desktop with it. A session bus and the part of Qt for
# Wayland are small. A tray comes with the desktop that the user has chosen; GNOME alone has it as an extension, which
# would bring all of GNOME to everybody else and is only suggested.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus, qt6-wayland")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS
  "gnome-shell-extension-appindicator, audacious | strawberry | vlc | mpv-mpris | rhythmbox")

include(CPack)
