"""What stands between the pages and the phone: it does what pages ask, reads back what then holds,
follows the phone and tells every page. What pages are told are messages: a kind and members."""

import asyncio
import base64
import contextlib
import json
import re
import shlex
import time
from collections import deque

from commands import is_command, is_trial
from phone import Gone, Phone

KWOCTL = ["kwoctl", "--json"]
# Of a state, what neither users nor clients change; to read it leaves lines in log and journal.
CONSTANT = ("generation", "bands", "mask", "version", "platform")
BLOCKS = ("speaker", "lineout", "bluetooth")
# kwoctl's exit status without a service.
NO_SERVICE = 3
# Seconds: before the phone is tried again, after which silence it is asked whether it is still there,
# without a change before what changed is read closer, and how often blocks are read unasked.
RETRY, SILENCE, QUIET, PERIOD = 1, 15, 0.3, 10
# How often changes may put that off.
MOST_QUIET = 10
# How many lines of a log a page that comes gets to see.
LINES = 300

# A phone's own log, or, where there is none of the service's own, what is its in the phone's.
LOG = f"""f=/run/log/zyl_kwo_service
[ -e $f ] && exec tail -n {LINES} -F $f
logcat -v time -T {LINES} | grep --line-buffered -E 'ZylcsToQuorinConv|zyl_kwo_service|zyl_settings_struct'"""
# Only an emulated phone writes down what its DSP is asked.
JOURNAL = f"[ ! -e /run/journal ] || exec tail -n {LINES} -F /run/journal"
# Journal lines after which a block may hold something else.
CHANGES_BLOCK = re.compile(r"dsp (write|fail|config) ")


def _said(text: str, kind: str) -> list[dict]:
    """The errors or warnings among kwoctl's lines: members what, why, remedy, as far as it says them."""
    found = []
    for line in text.splitlines():
        with contextlib.suppress(ValueError, KeyError, TypeError):
            found.append(json.loads(line)[kind])
    return found


def _complaint(text: str) -> dict:
    """What kwoctl complained of first."""
    for error in _said(text, "error"):
        return error
    return {"why": text.strip().removeprefix("kwoctl: ") or "kwoctl failed without a word"}


class Hub:
    def __init__(self, phone: Phone):
        self._phone = phone
        self._pages: set[asyncio.Queue] = set()
        self._state: dict = {}  # empty until the service has answered
        self._shown: dict[str, dict] = {}  # the last message of each kind
        self._lines = {"log": deque(maxlen=LINES), "journal": deque(maxlen=LINES)}
        self._turn = asyncio.Lock()  # of commands that change something
        self._changed = asyncio.Event()  # something that is only read after changes
        self._trial: asyncio.Task | None = None
        self._trial_end = 0.0
        self._sides: dict[str, bytes] = {}  # A and B: snapshots, of that not in use
        self._side = "A"

    # Pages.

    def join(self) -> asyncio.Queue:
        """A queue of messages, the first of which tell all that is known."""
        page = asyncio.Queue()
        for message in self._shown.values():
            if message.get("trial") == "running":
                message = {**message, "left": self._trial_end - time.monotonic()}
            page.put_nowait(message)
        for stream, lines in self._lines.items():
            page.put_nowait({"kind": "lines", "stream": stream, "lines": list(lines), "anew": True})
        self._pages.add(page)
        self._changed.set()
        return page

    def leave(self, page: asyncio.Queue):
        self._pages.discard(page)

    def _tell(self, message: dict):
        for page in self._pages:
            page.put_nowait(message)

    def _show(self, kind: str, **members):
        message = {"kind": kind, **members}
        if self._shown.get(kind) != message:
            self._shown[kind] = message
            self._tell(message)

    # What a page asks for. Each returns the members of the answer.

    async def ask(self, request: dict) -> dict:
        try:
            if request.get("side") in ("A", "B"):
                return await self._take_side(request["side"])
            if request.get("copy") is True:
                return await self._copy_side()
            if request.get("check") is True:
                self._changed.set()
                return {}
            words = request.get("words")
            if is_trial(words):
                return await self._try(words)
            if is_command(words):
                return await self._change(words, base64.b64decode(request.get("data", "")))
        except Gone as gone:
            self._show_gone(gone)
            return {"error": {"why": f"the phone is gone: {gone}"}}
        return {"error": {"why": "this is nothing that a page may ask for"}}

    async def _change(self, words: list[str], data: bytes) -> dict:
        async with self._turn:
            results = await self._phone.run([[*KWOCTL, *words], self._status()], data)
        return self._after(results)

    def _after(self, results) -> dict:
        """Shows what was read back at the end, and tells how the first command went."""
        self._show_state(results.each[-1], results.complaints)
        self._changed.set()
        if results.each[0].status != 0:
            return {"error": _complaint(results.complaints)}
        return {"result": results.each[0].read(), "warnings": _said(results.complaints, "warning")}

    async def _snapshot(self) -> bytes:
        results = await self._phone.run([["kwoctl", "snapshot", "-"]])
        if results.each[0].status != 0:
            raise Gone(_complaint(results.complaints)["why"])
        return results.each[0].output

    async def _take_side(self, side: str) -> dict:
        answer = {}
        async with self._turn:
            if side != self._side:
                self._sides[self._side] = now = await self._snapshot()
                wanted = self._sides.get(side, now)
                answer = self._after(await self._phone.run(
                    [[*KWOCTL, "restore", "-"], self._status()], wanted))
                if "error" not in answer:
                    self._side = side
        self._show_sides()
        return answer

    async def _copy_side(self) -> dict:
        async with self._turn:
            self._sides["B" if self._side == "A" else "A"] = await self._snapshot()
        self._show_sides()
        return {}

    def _show_sides(self):
        self._show("sides", side=self._side)

    async def _try(self, words: list[str]) -> dict:
        if self._trial is not None:
            return {"error": {"why": "a trial runs already"}}
        begun = asyncio.get_running_loop().create_future()
        self._trial = asyncio.create_task(self._follow_trial(words, begun))
        return await begun

    async def _follow_trial(self, words: list[str], begun: asyncio.Future):
        end = {"trial": "over"}
        try:
            async for line in self._phone.stream(shlex.join([*KWOCTL, *words])):
                with contextlib.suppress(ValueError, KeyError):
                    message = json.loads(line)
                    if message["trial"] == "running":
                        self._trial_end = time.monotonic() + message["seconds"]
                        self._show("trial", **message, left=message["seconds"])
                    else:
                        end = message
                await self._refresh()
                self._changed.set()
                if not begun.done():
                    begun.set_result({})
        except Gone as gone:
            if not begun.done():
                begun.set_result({"error": _complaint(str(gone))})
        finally:
            # Only now may the next one begin, and pages offer it.
            self._trial = None
            if not begun.done():
                begun.set_result({})
            if self._shown.get("trial", {}).get("trial") == "running":
                self._show("trial", **end)

    # What the phone does by itself.

    def _show_gone(self, gone: Gone):
        self._state = {}
        self._show("phone", state="gone", why=str(gone))

    def _status(self) -> list[str]:
        """The command that reads the state: at first all of it, then what may change."""
        keys = [f"{key}.{part}" if part else key
                for key, value in self._state.items() if key not in CONSTANT
                for part in (value if isinstance(value, dict) else [""])]
        return [*KWOCTL, "get", *keys] if keys else [*KWOCTL, "status"]

    def _show_state(self, result, complaints: str):
        state = result.read()
        if result.status == 0 and isinstance(state, dict):
            self._state = {**self._state, **state}
            self._show("phone", state="up")
            self._show("state", state=self._state)
            return
        self._state = {}
        if result.status == NO_SERVICE:
            self._show("phone", state="no service")
        else:
            self._show("phone", state="refuses", why=_complaint(complaints)["why"])

    async def _refresh(self):
        try:
            results = await self._phone.run([self._status()])
        except Gone as gone:
            self._show_gone(gone)
            return
        self._show_state(results.each[0], results.complaints)

    def _is_up(self) -> bool:
        return self._shown.get("phone", {}).get("state") == "up"

    async def follow(self):
        """Notices what others change, and whether phone and service are there."""
        self._show_sides()
        watch = shlex.join([*KWOCTL, "watch"])
        while True:
            await self._refresh()
            if self._is_up():
                self._changed.set()
                with contextlib.suppress(Gone):
                    async for _ in self._phone.stream(watch, SILENCE):
                        await self._refresh()
                        self._changed.set()
            await asyncio.sleep(RETRY)

    async def look_closer(self):
        """Reads what takes longer to read, after changes."""
        while True:
            # With a journal nothing that changes a block goes unnoticed.
            with contextlib.suppress(TimeoutError):
                async with asyncio.timeout(None if self._lines["journal"] else PERIOD):
                    await self._changed.wait()
            # While a slider is dragged it would only be in the way, but it is not put off for ever.
            for _ in range(MOST_QUIET):
                self._changed.clear()
                await asyncio.sleep(QUIET)
                if not self._changed.is_set() and not self._turn.locked():
                    break
            if self._pages and self._is_up():
                try:
                    await self._read_closer()
                except Gone:
                    self._changed.set()
                    await asyncio.sleep(RETRY)

    async def _read_closer(self):
        # One after the other, so that what matters most is there first.
        verdicts = (await self._phone.run([[*KWOCTL, "verify"]])).each[0]
        self._show("verdicts", blocks=verdicts.read() or [])
        history, presets = (await self._phone.run(
            [[*KWOCTL, "history"], [*KWOCTL, "preset", "list"]])).each
        self._show("history", entries=history.read() or [])
        self._show("presets", presets=presets.read() or [])
        blocks = await self._phone.run(
            [["kwoctl", "block", "fetch", name, "-"] for name in BLOCKS])
        for name, block in zip(BLOCKS, blocks.each):
            if block.status == 0:
                self._show(f"block {name}", name=name,
                           bytes=base64.b64encode(block.output).decode())

    async def tail(self, stream: str):
        """Passes on a log's lines, as many at once as have come in a moment."""
        line = {"log": LOG, "journal": JOURNAL}[stream]
        while True:
            waiting = []
            anew = True
            with contextlib.suppress(Gone):
                async for text in self._phone.stream(line, 0.1):
                    if text is not None:
                        waiting.append(text)
                    if waiting and (text is None or len(waiting) == LINES):
                        self._tell_lines(stream, waiting, anew)
                        waiting, anew = [], False
            await asyncio.sleep(RETRY)

    def _tell_lines(self, stream: str, lines: list[str], anew: bool):
        if anew:
            self._lines[stream].clear()
        self._lines[stream].extend(lines)
        self._tell({"kind": "lines", "stream": stream, "lines": lines, "anew": anew})
        if stream == "journal" and any(map(CHANGES_BLOCK.match, lines)):
            self._changed.set()
