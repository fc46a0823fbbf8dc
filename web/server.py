#!/usr/bin/python3
"""The panel: a page on this machine that drives a phone. See ./panel."""

import argparse
import asyncio
import contextlib
import hmac
import secrets
import shlex
import signal
from pathlib import Path

from aiohttp import WSMsgType, web

from hub import Hub
from phone import Phone

PAGE = Path(__file__).resolve().parent / "page"
ADDRESS = "127.0.0.1"
# The page is all its own: nothing is loaded from elsewhere, and nobody else may frame it or learn
# its address, in which the token stands.
HEADERS = {
    "Content-Security-Policy": "default-src 'none'; script-src 'self'; style-src 'self'; "
                               "connect-src 'self'; img-src 'self' data:; base-uri 'none'; "
                               "form-action 'none'; frame-ancestors 'none'",
    "Cross-Origin-Opener-Policy": "same-origin",
    "Cross-Origin-Resource-Policy": "same-origin",
    "Referrer-Policy": "no-referrer",
    "X-Content-Type-Options": "nosniff",
    "Cache-Control": "no-store",
}


def is_ours(request: web.Request, port: int, token: str) -> bool:
    """Whether the request comes from our own page, or from a person who typed its address. Other
    sites' pages can send requests to this machine, or give it a name of their own."""
    hosts = {f"{ADDRESS}:{port}", f"localhost:{port}"}
    host = request.headers.get("Host")
    # A browser names the origin of every socket, so there a missing one is refused too.
    sends = "Upgrade" in request.headers
    origin = request.headers.get("Origin", None if sends else f"http://{host}")
    return (host in hosts and origin == f"http://{host}"
            and request.headers.get("Sec-Fetch-Site", "none") in ("same-origin", "none")
            and hmac.compare_digest(request.match_info.get("token", "").encode(), token.encode()))


class Server:
    def __init__(self, hub: Hub):
        self._hub = hub
        self._token = secrets.token_urlsafe()
        self._files = {path.name: path for path in PAGE.iterdir()}
        self._port = 0

    async def start(self, port: int) -> str:
        """The page's address, once it is served."""
        app = web.Application(middlewares=[self._guard])
        app.add_routes([web.get("/{token}/socket", self._socket),
                        web.get("/{token}/{name:.*}", self._file)])
        self._runner = web.AppRunner(app, access_log=None)
        await self._runner.setup()
        site = web.TCPSite(self._runner, ADDRESS, port, shutdown_timeout=1)
        await site.start()
        self._port = site._server.sockets[0].getsockname()[1]
        return f"http://{ADDRESS}:{self._port}/{self._token}/"

    @web.middleware
    async def _guard(self, request: web.Request, handler) -> web.StreamResponse:
        if not is_ours(request, self._port, self._token):
            return web.Response(status=403, text="Not for you.\n", headers=HEADERS)
        return await handler(request)

    async def _file(self, request: web.Request) -> web.StreamResponse:
        path = self._files.get(request.match_info["name"] or "index.html")
        if path is None:
            return web.Response(status=404, text="No such file.\n", headers=HEADERS)
        return web.FileResponse(path, headers=HEADERS)

    async def _socket(self, request: web.Request) -> web.StreamResponse:
        socket = web.WebSocketResponse(heartbeat=20)
        await socket.prepare(request)
        page = self._hub.join()
        writer = asyncio.create_task(self._write(socket, page))
        answers = set()
        try:
            async for message in socket:
                if message.type == WSMsgType.TEXT:
                    answer = asyncio.create_task(self._answer(message, page))
                    answers.add(answer)
                    answer.add_done_callback(answers.discard)
        finally:
            self._hub.leave(page)
            writer.cancel()
        return socket

    async def _answer(self, message, page: asyncio.Queue):
        try:
            request = message.json()
            number = request["number"]
            answer = await self._hub.ask(request)
        except (ValueError, TypeError, KeyError, AttributeError):
            return  # no page of ours sends this
        page.put_nowait({"kind": "answer", "number": number, **answer})

    @staticmethod
    async def _write(socket: web.WebSocketResponse, page: asyncio.Queue):
        with contextlib.suppress(ConnectionError):
            while True:
                await socket.send_json(await page.get())


async def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--via", required=True, help="a command that takes a line of shell")
    parser.add_argument("--port", type=int, default=0)
    arguments = parser.parse_args()
    hub = Hub(Phone(shlex.split(arguments.via)))
    server = Server(hub)
    print(await server.start(arguments.port), flush=True)
    stop = asyncio.Event()
    for end in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        asyncio.get_running_loop().add_signal_handler(end, stop.set)
    work = [asyncio.create_task(task) for task in
            (hub.follow(), hub.look_closer(), hub.tail("log"), hub.tail("journal"), stop.wait())]
    await asyncio.wait(work, return_when=asyncio.FIRST_COMPLETED)
    for task in work:
        task.cancel()
    for ended in await asyncio.gather(*work, return_exceptions=True):
        if isinstance(ended, Exception) and not isinstance(ended, asyncio.CancelledError):
            raise ended


if __name__ == "__main__":
    asyncio.run(main())
