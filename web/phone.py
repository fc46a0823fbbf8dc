"""A phone as the panel sees it: a command of this machine that runs a line of shell there."""

import asyncio
import contextlib
import json
import secrets
import shlex
from collections.abc import AsyncIterator, Sequence
from dataclasses import dataclass

# Longer than the longest line that kwoctl writes, or that comes in a log.
LONGEST_LINE = 1 << 20


class Gone(Exception):
    """The phone did not run the line, or not to its end; the text says why."""


@dataclass
class Result:
    status: int
    output: bytes

    def read(self):
        """What kwoctl --json printed, or None when it printed nothing of the kind."""
        try:
            return json.loads(self.output)
        except ValueError:
            return None


@dataclass
class Results:
    each: list[Result]
    complaints: str  # what all of them together wrote to standard error


def _why(complaints: str) -> str:
    lines = complaints.strip().splitlines()
    return lines[-1] if lines else "the phone does not answer"


class Phone:
    """Runs commands on a phone, several at the same time if need be."""

    def __init__(self, via: Sequence[str]):
        """`via` are the words of a command that takes one more, a line of shell for the phone."""
        self._via = list(via)

    async def _start(self, line: str, with_input: bool) -> asyncio.subprocess.Process:
        pipe, nothing = asyncio.subprocess.PIPE, asyncio.subprocess.DEVNULL
        try:
            # In a session of its own: an interrupt from the terminal is for the server alone.
            return await asyncio.create_subprocess_exec(
                *self._via, line, stdin=pipe if with_input else nothing, stdout=pipe, stderr=pipe,
                limit=LONGEST_LINE, start_new_session=True)
        except OSError as error:
            raise Gone(str(error)) from error

    async def run(self, commands: Sequence[Sequence[str]], data: bytes = b"",
                  patience: float = 60) -> Results:
        """Runs the commands one after the other; the first reads `data`. Raises Gone."""
        # How a command ended is told by the phone itself: the status of what leads there may be
        # that of something else that went wrong.
        mark = secrets.token_hex(8)
        line = "; ".join(f"{shlex.join(words)}; printf '\\n{mark} %d\\n' $?" for words in commands)
        process = await self._start(line, bool(data))
        try:
            # Not wait_for, which forgets a cancellation that comes as the process ends.
            async with asyncio.timeout(patience):
                out, err = await process.communicate(data or None)
        except TimeoutError:
            raise Gone(f"no answer within {patience:.0f} s") from None
        finally:
            await self._end(process)
        complaints = err.decode(errors="replace")
        results = []
        for part in out.split(f"\n{mark} ".encode()):
            if results:
                status, _, part = part.partition(b"\n")
                results[-1].status = int(status)
            results.append(Result(-1, part))
        if len(results) != len(commands) + 1:
            raise Gone(_why(complaints))
        return Results(results[:-1], complaints)

    async def stream(self, line: str, pause: float | None = None) -> AsyncIterator[str | None]:
        """The lines that a line of shell prints, for as long as it runs; None after each `pause` in
        seconds without one. Raises Gone when it ends with a complaint."""
        process = await self._start(line, False)
        errors = asyncio.create_task(process.stderr.read())
        reading = None
        try:
            while True:
                reading = reading or asyncio.create_task(process.stdout.readline())
                done, _ = await asyncio.wait({reading}, timeout=pause)
                if not done:
                    yield None
                    continue
                text, reading = reading.result(), None
                if not text:
                    break
                yield text.decode(errors="replace").rstrip("\r\n")
            if await process.wait() != 0:
                raise Gone(_why((await errors).decode(errors="replace")))
        finally:
            await self._end(process)
            for task in (reading, errors):
                if task is not None:
                    task.cancel()

    @staticmethod
    async def _end(process: asyncio.subprocess.Process):
        """Ends the process, which ends in turn what it runs on the phone."""
        if process.returncode is not None:
            return
        for end in (process.terminate, process.kill):
            with contextlib.suppress(ProcessLookupError, TimeoutError):
                end()
                async with asyncio.timeout(10):
                    await process.wait()
                return
