"""The private desktop's sound server: PipeWire where the machine has it, else PulseAudio.

Either way there is a sink for the player ("music", the default) and one for the voice ("speech"), and a monitor
("both.monitor") that holds both on one clock. No sound card is looked at, and nothing of the user's sound is used.
"""

import glob
import os
import shutil
import subprocess

from desktop.processes import wait_until

_HERE = os.path.dirname(os.path.abspath(__file__))
_SETTINGS = os.path.join(_HERE, "pipewire")
_STOCK_POLICY = "/usr/share/wireplumber"
_STOCK_SPEECH = "/etc/speech-dispatcher/speechd.conf"

_PULSEAUDIO = """
load-module module-native-protocol-unix
load-module module-null-sink sink_name=both rate=44100 channels=4 channel_map=front-left,front-right,rear-left,rear-right
load-module module-remap-sink sink_name=music master=both channels=2 channel_map=front-left,front-right \
master_channel_map=front-left,front-right remix=no
load-module module-remap-sink sink_name=speech master=both channels=2 channel_map=front-left,front-right \
master_channel_map=rear-left,rear-right remix=no
set-default-sink music
"""

_LINKS = (("music:monitor_FL", "both:playback_FL"), ("music:monitor_FR", "both:playback_FR"),
          ("speech:monitor_FL", "both:playback_RL"), ("speech:monitor_FR", "both:playback_RR"))

# What each needs, the preferred one first.
PROGRAMS = {"pipewire": ("pipewire", "pipewire-pulse", "wireplumber", "pw-link"), "pulseaudio": ("pulseaudio",)}


class Missing(Exception):
    """The sound server, or each of them, is not installed."""


def installed():
    """Their names, the preferred one first."""
    return [name for name, programs in PROGRAMS.items() if all(map(shutil.which, programs))]


def choose():
    """The name of the one to use; SONVARA_SOUND forces one."""
    forced = os.environ.get("SONVARA_SOUND")
    if forced and forced not in PROGRAMS:
        raise ValueError(f"SONVARA_SOUND is {forced}, not one of: {', '.join(PROGRAMS)}")
    for name in installed():
        if forced in (None, "", name):
            return name
    raise Missing(f"{forced or ' or '.join(PROGRAMS)} is not installed")


def start(desktop):
    """Starts the chosen one in the desktop, which needs a session bus, and returns its name once it can be used."""
    name = choose()
    desktop.env["PULSE_SERVER"] = f"unix:{desktop.env['XDG_RUNTIME_DIR']}/pulse/native"
    _STARTERS[name](desktop)
    return name


def remember_volumes(desktop):
    """From now on a stream begins at the volume at which the program's last one ended, as on a user's desktop."""
    if desktop.sound == "pulseaudio":
        desktop.run("pactl", "load-module", "module-stream-restore", "restore_device=false")
        return
    if not _is_old_policy():
        raise Missing("a WirePlumber 0.4, which can be made to remember volumes by a script beside the policy,")
    desktop.start("sound-memory", ["wireplumber", "-c", "memory.conf"],
                  {"DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent", "WIREPLUMBER_CONFIG_DIR": _SETTINGS})


def write_speech_settings(desktop):
    """Has a speech-dispatcher that can speak to PipeWire itself, as 0.12 can, do so: over PulseAudio's protocol PipeWire 1.4
    does not tell the end of a line when its sink's sound goes on to another sink, as it does here for the recording."""
    if desktop.sound != "pipewire" or not glob.glob("/usr/lib/*/speech-dispatcher/spd_pipewire.so"):
        return
    path = os.path.join(desktop.env["HOME"], ".config", "speech-dispatcher", "speechd.conf")
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "a", encoding="utf-8") as settings:
        if settings.tell() == 0:  # else it has been told of another voice
            settings.write(f'Include "{_STOCK_SPEECH}"\n')
        settings.write('AudioOutputMethod "pipewire"\n')


def _start_pulseaudio(desktop):
    desktop.write_setting("pulse/daemon.conf", "flat-volumes = no\n")
    script = desktop.write_setting("pulse/sinks.pa", _PULSEAUDIO)
    desktop.start("sound", ["pulseaudio", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
                            "-n", "-F", script])
    wait_until("the sound server", lambda: _succeeds(desktop, "pactl", "info"))


def _start_pipewire(desktop):
    # Each asks the system for real-time threads and devices, where it can reach it.
    apart = {"DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent"}
    desktop.start("sound", ["pipewire", "-c", os.path.join(_SETTINGS, "sinks.conf")], apart)
    wait_until("the sound server", lambda: _succeeds(desktop, "pw-link", "--output"))
    policy, folder = _policy()
    desktop.start("sound-policy", policy, {**apart, "WIREPLUMBER_CONFIG_DIR": folder})
    for output, port in _LINKS:  # the policy gives the sinks their ports
        wait_until(f"{output} in the recording", lambda: _succeeds(desktop, "pw-link", output, port))
    desktop.start("sound-front", ["pipewire", "-c", os.path.join(_SETTINGS, "pulse.conf")], apart)
    wait_until("the sinks", lambda: _succeeds(desktop, "pactl", "set-default-sink", "music"))


def _policy():
    """The command that joins streams to sinks and does nothing else, and the folder of its settings."""
    if _is_old_policy():
        return ["wireplumber", "-c", "policy.conf"], _SETTINGS
    return ["wireplumber", "--profile", "policy"], f"{_SETTINGS}:{_STOCK_POLICY}"


def _is_old_policy():
    version = subprocess.run(["wireplumber", "--version"], check=True, stdout=subprocess.PIPE).stdout.decode()
    return " 0.4." in version


def _succeeds(desktop, *command):
    return subprocess.run(command, env=desktop.env, check=False, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).returncode == 0


_STARTERS = {"pipewire": _start_pipewire, "pulseaudio": _start_pulseaudio}
