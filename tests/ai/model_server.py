"""Stand-ins for the models' servers on this machine: they speak the two protocols as far as the tools need them.

They answer what a test wants, and keep every request.
"""

import json
import re
import socket
import threading
import time
from dataclasses import dataclass
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

_REASONS = {401: "authentication_error", 403: "permission_error", 429: "rate_limit_error", 500: "api_error"}
_ADDED_BY_TOOL = re.compile(r"\s*<(system-reminder|session_context)>")


@dataclass(frozen=True)
class Answer:
    """`status` other than 200 is an error; `delay` seconds before the first byte, `pause` between pieces of the text."""

    text: str = ""
    status: int = 200
    delay: float = 0.0
    pause: float = 0.0


class ModelServer:
    """`api`: "anthropic" or "gemini"; `answer`: an Answer, or what gives one for a prompt."""

    def __init__(self, api, answer):
        self._answer = answer if callable(answer) else lambda _prompt: answer
        self.requests = []  # (method, path, text of the body)
        self.prompts = []   # what the person asked, without what the tool has put around it
        self.came = []      # when each of the prompts came (monotonic clock)
        server = type("Handler", (_HANDLERS[api],), {"server_of_test": self})
        self._http = ThreadingHTTPServer(("127.0.0.1", 0), server)
        self._http.daemon_threads = True
        self.address = f"http://127.0.0.1:{self._http.server_address[1]}"
        threading.Thread(target=self._http.serve_forever, kwargs={"poll_interval": 0.1}, daemon=True).start()

    def status_for(self, prompt):
        return self._answer(prompt).status

    def answer(self, prompt):
        self.prompts.append(prompt)
        self.came.append(time.monotonic())
        return self._answer(prompt)

    def has(self, text):
        """Whether any request holds the text, in JSON's writing or as it is."""
        return any(text in body or json.dumps(text)[1:-1] in body for _, _, body in self.requests)


def closed_address():
    """An address at which nobody listens."""
    with socket.create_server(("127.0.0.1", 0)) as listener:
        return f"http://127.0.0.1:{listener.getsockname()[1]}"


class _Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    server_of_test = None

    def do_GET(self):
        self._keep(b"")
        self._send(404, {})

    def do_HEAD(self):
        self._keep(b"")
        self.send_response(200)
        self.send_header("Content-Length", "0")
        self.end_headers()

    def do_POST(self):
        body = self.rfile.read(int(self.headers.get("Content-Length") or 0))
        self._keep(body)
        try:
            self.reply(json.loads(body or b"{}"))
        except (BrokenPipeError, ConnectionResetError):
            self.close_connection = True  # the tool has been asked to end

    def log_message(self, *_):
        pass

    def _keep(self, body):
        self.server_of_test.requests.append((self.command, self.path, body.decode(errors="replace")))

    def _send(self, status, value):
        data = json.dumps(value).encode()
        self.send_response(status)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(data)))
        self.end_headers()
        self.wfile.write(data)

    def _serve(self, prompt, whole, events, is_stream):
        """`whole` gives the value of an answer, `events` those of its stream, each as it is sent."""
        answer = self.server_of_test.answer(prompt)
        time.sleep(answer.delay)
        if answer.status != 200:
            self._send(answer.status, self.error(answer.status))
        elif is_stream:
            self._stream(events(answer.text), answer.pause)
        else:
            time.sleep(answer.pause * len(_pieces(answer.text)))  # asked for as a whole, it is no faster
            self._send(200, whole(answer.text))

    def _stream(self, events, pause):
        self.send_response(200)
        self.send_header("Content-Type", "text/event-stream")
        self.send_header("Connection", "close")
        self.end_headers()
        self.close_connection = True
        for event in events:
            self.wfile.write(event.encode())
            time.sleep(pause)


class _Anthropic(_Handler):

    def reply(self, request):
        if self.path.split("?")[0] != "/v1/messages":
            self._send(200, {"input_tokens": 10})
            return
        asked = [message for message in request["messages"] if message["role"] == "user"][-1]["content"]
        parts = [asked] if isinstance(asked, str) else [part.get("text", "") for part in asked]
        self._serve(_without_additions(parts), self._whole, self._events, request.get("stream", False))

    @staticmethod
    def error(status):
        return {"type": "error", "error": {"type": _REASONS[status], "message": "as the test wants it"}}

    @staticmethod
    def _message(content, reason):
        return {"id": "msg_local", "type": "message", "role": "assistant", "model": "local", "content": content,
                "stop_reason": reason, "stop_sequence": None, "usage": {"input_tokens": 10, "output_tokens": 20}}

    def _whole(self, text):
        return self._message([{"type": "text", "text": text}], "end_turn")

    def _events(self, text):
        yield _event({"type": "message_start", "message": self._message([], None)})
        yield _event({"type": "content_block_start", "index": 0, "content_block": {"type": "text", "text": ""}})
        for piece in _pieces(text):
            yield _event({"type": "content_block_delta", "index": 0, "delta": {"type": "text_delta", "text": piece}})
        yield _event({"type": "content_block_stop", "index": 0})
        yield _event({"type": "message_delta", "delta": {"stop_reason": "end_turn", "stop_sequence": None},
                      "usage": {"output_tokens": 20}})
        yield _event({"type": "message_stop"})


class _Gemini(_Handler):

    def reply(self, request):
        if not self.path.split("?")[0].endswith(("generateContent", "GenerateContent")):
            self._send(200, {"totalTokens": 10})
            return
        config = request.get("generationConfig", {})
        asked = [content for content in request["contents"] if content["role"] == "user"][-1]["parts"]
        prompt = _without_additions([part.get("text", "") for part in asked])
        schema = config.get("responseJsonSchema") or config.get("responseSchema")
        if schema:
            self._choose_model(schema, self.server_of_test.status_for(prompt))
            return
        self._serve(prompt, lambda text: self._part(text, True), self._events, "stream" in self.path)

    def _choose_model(self, schema, status):
        """The tool asks a small model first how hard the question is. That one is as well or as ill as the other."""
        self._send(status, self.error(status) if status != 200 else self._part(json.dumps(_example(schema)), True))

    @staticmethod
    def error(status):
        return {"error": {"code": status, "message": "as the test wants it", "status": _REASONS[status].upper()}}

    @staticmethod
    def _part(text, is_last):
        candidate = {"content": {"role": "model", "parts": [{"text": text}] if text else []}, "index": 0}
        if is_last:
            candidate["finishReason"] = "STOP"
        usage = {"promptTokenCount": 10, "candidatesTokenCount": 20, "totalTokenCount": 30}
        return {"candidates": [candidate], "modelVersion": "local", "responseId": "local", "usageMetadata": usage}

    def _events(self, text):
        pieces = _pieces(text)
        for piece in pieces[:-1]:
            yield f"data: {json.dumps(self._part(piece, False))}\r\n\r\n"
        yield f"data: {json.dumps(self._part(pieces[-1] if pieces else '', True))}\r\n\r\n"


_HANDLERS = {"anthropic": _Anthropic, "gemini": _Gemini}


def _without_additions(parts):
    return "\n".join(part for part in parts if part and not _ADDED_BY_TOOL.match(part))


def _pieces(text):
    return [text[start:start + 24] for start in range(0, len(text), 24)]


def _event(value):
    return f"event: {value['type']}\ndata: {json.dumps(value)}\n\n"


def _example(schema):
    """The smallest value that a JSON schema admits."""
    if "enum" in schema:
        return schema["enum"][0]
    kind = str(schema.get("type", "")).lower()
    if kind == "object":
        return {name: _example(part) for name, part in schema.get("properties", {}).items()}
    return {"integer": 1, "number": 1, "boolean": False, "array": []}.get(kind, "local")
