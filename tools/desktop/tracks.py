"""Tagged tracks of plain tones: the pitch says in a recording which track is heard."""

import os
import subprocess
from dataclasses import dataclass


@dataclass(frozen=True)
class Track:
    title: str
    artist: str
    album: str
    pitch: float  # Hz
    seconds: float
    kind: str = "flac"  # or "ogg", "mp3"
    file: str = ""  # its name; else it is called after its place in the list


def make_tracks(tracks, folder):
    """Writes the tracks to the folder and returns their file names, in order."""
    os.makedirs(folder, exist_ok=True)
    return [_make_track(track, os.path.join(folder, track.file or f"{number:02}.{track.kind}"))
            for number, track in enumerate(tracks, 1)]


def _make_track(track, name):
    tags = {"TITLE": track.title, "ARTIST": track.artist, "ALBUM": track.album}
    comments = [part for tag in tags.items() if tag[1] for part in ("--add-comment", "=".join(tag))]
    subprocess.run(["sox", "-R", "-n", "-r", "44100", "-c", "2", "--comment", "", *comments, name, "synth",
                    str(track.seconds), "sine", str(track.pitch), "vol", "0.5"], check=True, timeout=30)
    return name
