"""Records what the music and the speech sink play, on one clock, and measures it.

Times are seconds from the start of the recording; levels are decibels below full scale.
"""

import array
import math
import os
import wave
from dataclasses import dataclass

from desktop.processes import stop, wait_until

RATE = 44100
MUSIC, SPEECH = 0, 2  # the first channel of each in the four channels of the recording
STEP = 0.01  # seconds of one measured window
SILENCE = -96.0
AUDIBLE = -50.0  # louder than this is sound; the pauses between two words are not
_AUDIBLE_SAMPLE = 32768 * 10 ** (AUDIBLE / 20)  # a louder window holds one
_CHANNELS = 4
_CHANNEL_MAP = "--channel-map=front-left,front-right,rear-left,rear-right"  # else the channels are mixed
_FRAMES = int(RATE * STEP)


@dataclass(frozen=True)
class Span:
    start: float
    end: float

    @property
    def seconds(self):
        return self.end - self.start


class Recording:
    """A recording that may still be growing in its file."""

    def __init__(self, name):
        self._name = name
        self._levels = {MUSIC: [], SPEECH: []}

    def seconds(self):
        return os.path.getsize(self._name) / (2 * _CHANNELS * RATE)

    def levels(self, channel):
        """The level of each STEP so far."""
        self._measure()
        return self._levels[channel]

    def level_between(self, channel, start, end):
        """The middle one of the levels between the two times."""
        levels = sorted(self.levels(channel)[round(start / STEP):round(end / STEP)])
        if not levels:
            raise ValueError(f"nothing was recorded between {start:.2f} s and {end:.2f} s")
        return levels[len(levels) // 2]

    def loudest_between(self, channel, start, end, piece=0.005):
        """The level of the loudest piece between the two times, which is exact to the sample."""
        samples, size = self._samples(channel, start, end), round(piece * RATE)
        return max(_level(samples[first:first + size]) for first in range(0, len(samples) - size + 1, size))

    def onset(self, channel, sound):
        """When the first sample of one of the `sounds` is audible."""
        samples = self._samples(channel, sound.start, sound.end)
        return sound.start + next(index for index, sample in enumerate(samples) if abs(sample) > _AUDIBLE_SAMPLE) / RATE

    def sounds(self, channel, gap=0.7):
        """The spans with sound; shorter silences than `gap`, as between two sentences, belong to them."""
        spans = []
        for index, level in enumerate(self.levels(channel)):
            time = index * STEP
            if level <= AUDIBLE:
                continue
            if spans and time - spans[-1].end < gap:
                spans[-1] = Span(spans[-1].start, time + STEP)
            else:
                spans.append(Span(time, time + STEP))
        return spans

    def is_audible(self, channel):
        """Whether the last tenth of a second holds sound."""
        return max(self.levels(channel)[-10:], default=SILENCE) > AUDIBLE

    def pitch_between(self, start, end, piece=0.1):
        """The pitch of the music, to about 10 Hz: the middle one of its pieces', as a busy machine may leave some out."""
        count = max(1, round((end - start) / piece))
        length = (end - start) / count
        pitches = sorted(self._pitch(start + index * length, length) for index in range(count))
        return pitches[count // 2]

    def _pitch(self, start, length):
        """The number of upward zero crossings in a second."""
        samples = self._samples(MUSIC, start, start + length)
        return sum(1 for before, after in zip(samples, samples[1:]) if before < 0 <= after) / length

    def save(self, channel, name):
        """Writes the two channels from `channel` on as a WAV file."""
        samples = array.array("h", self._read(0, self.seconds()))
        with wave.open(name, "wb") as out:
            out.setnchannels(2)
            out.setsampwidth(2)
            out.setframerate(RATE)
            pair = array.array("h", bytes(4 * (len(samples) // _CHANNELS)))
            pair[0::2] = samples[channel::_CHANNELS]
            pair[1::2] = samples[channel + 1::_CHANNELS]
            out.writeframes(pair.tobytes())

    def _samples(self, channel, start, end):
        return array.array("h", self._read(start, end))[channel::_CHANNELS]

    def _read(self, start, end):
        frame = 2 * _CHANNELS
        with open(self._name, "rb") as file:
            file.seek(round(start * RATE) * frame)
            data = file.read((round(end * RATE) - round(start * RATE)) * frame)
        return data[:len(data) // frame * frame]

    def _measure(self):
        done = len(self._levels[MUSIC])
        samples = array.array("h", self._read(done * STEP, self.seconds()))
        for first in range(0, len(samples) - _FRAMES * _CHANNELS + 1, _FRAMES * _CHANNELS):
            for channel, levels in self._levels.items():
                levels.append(_level(samples[first + channel:first + _FRAMES * _CHANNELS:_CHANNELS]))


class Recorder(Recording):
    """Records the private desktop from its construction to stop()."""

    def __init__(self, desktop):
        name = os.path.join(desktop.folder, "recording.raw")
        with open(name, "wb") as file:
            self._process = desktop.start(
                "recorder", ["parec", "--device=both.monitor", f"--rate={RATE}", f"--channels={_CHANNELS}", _CHANNEL_MAP,
                             "--format=s16le", "--latency-msec=20", "--raw"], stdout=file)
        super().__init__(name)
        wait_until("the recorder", lambda: self.seconds() > 0)

    def stop(self):
        stop(self._process)

    def next_sound(self, channel, limit):
        """Waits until there is sound, and returns the time on this recording's clock."""
        wait_until("sound", lambda: self.is_audible(channel), limit)
        return self.seconds()

    def next_silence(self, channel, limit, length=1.0):
        """Waits until the channel has been silent for `length` seconds."""
        count = round(length / STEP)
        wait_until("silence", lambda: max(self.levels(channel)[-count:]) <= AUDIBLE, limit)


def likeness(levels, others):
    """How alike two spoken lines sound, from the courses of their levels: 1 is the same, about 0 is unrelated.

    The silences are left out, since on a busy machine there are more of them in a line than there should be.
    """
    one, two = (_course(line) for line in (levels, others))
    return max(_correlation(one[max(shift, 0):], two[max(-shift, 0):]) for shift in range(-20, 21))


def _course(levels, width=6):
    """The loudness of what is audible, smoothed."""
    loud = [_loudness(level) for level in levels if level > AUDIBLE]
    return [sum(loud[index:index + width]) / width for index in range(len(loud) - width + 1)]


def _correlation(one, two):
    """Of two courses from their starts; what only one of them has counts as unlike."""
    count = min(len(one), len(two))
    if not count:
        return 0.0
    a, b = ([value - sum(line) / len(line) for value in line[:count]] for line in (one, two))
    norm = math.sqrt(sum(x * x for x in a) * sum(y * y for y in b))
    return sum(x * y for x, y in zip(a, b)) / norm * count / max(len(one), len(two)) if norm else 0.0


def _loudness(level):
    return 10 ** (level / 20)


def _level(samples):
    power = sum(sample * sample for sample in samples) / len(samples)
    return max(SILENCE, 10 * math.log10(power / 32768 ** 2)) if power else SILENCE
