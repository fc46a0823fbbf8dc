"""What a page may have kwoctl do. Whatever is not listed is refused, so no word of a page becomes an
option or the name of a file on the phone."""

import re

_NAME = r"[\w][\w.-]*"
_ROUTE = r"(speaker|lineout|bluetooth)"
_SET = r"set( [a-z]+([.-][a-z0-9]+)*=[\w.,+-]+)+"
_PRESET_LOAD = rf"preset load {_NAME}"
_RESTORE = r"restore -"
_CURVE = r"geq load -"

_ALLOWED = [
    _SET,
    _CURVE,
    _RESTORE,
    r"listening-test reset",
    r"reload",
    r"undo( \d+)?",
    r"keep",
    rf"preset (save|remove) {_NAME}",
    _PRESET_LOAD,
    rf"block push {_ROUTE} -",
    rf"tune (speaker|second-speaker|accessory {_ROUTE}|stereo-room [12]|multichannel-room) -",
]
_TRIAL = re.compile(rf"try \d{{1,4}} ({_SET}|{_PRESET_LOAD})")
_COMMAND = re.compile("|".join(_ALLOWED))


def _joined(words) -> str | None:
    """The words as one text, or None when a word is none."""
    if not isinstance(words, list) or not all(isinstance(w, str) and re.fullmatch(r"\S+", w)
                                              for w in words):
        return None
    return " ".join(words)


def is_command(words) -> bool:
    text = _joined(words)
    return text is not None and _COMMAND.fullmatch(text) is not None


def is_trial(words) -> bool:
    text = _joined(words)
    return text is not None and _TRIAL.fullmatch(text) is not None
