#!/usr/bin/env python3
"""PageTest.py ORVANE: opens pages of `orvane assembly --html` in headless Chromium,
using chromedriver."""

import contextlib
import http.server
import json
import pathlib
import subprocess
import sys
import tempfile
import threading
import time
import urllib.request


class Browser:
    """One window, driven over the WebDriver protocol."""

    def __init__(self, port):
        self.url = f"http://127.0.0.1:{port}"
        options = {"args": ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--window-size=1280,900"]}
        session = self.post("/session", {"capabilities": {"alwaysMatch": {"goog:chromeOptions": options}}})
        self.url += f"/session/{session['sessionId']}"

    def post(self, path, body):
        request = urllib.request.Request(self.url + path, json.dumps(body).encode(), {"Content-Type": "application/json"})
        with urllib.request.urlopen(request, timeout=60) as response:
            return json.load(response)["value"]

    def open(self, url):
        self.post("/url", {"url": url})

    def run(self, script):
        return self.post("/execute/sync", {"script": script, "args": []})

    def type(self, selector, text):
        element = self.post("/element", {"using": "css selector", "value": selector})
        self.post(f"/element/{next(iter(element.values()))}/value", {"text": text})


def start_driver():
    """Starts chromedriver, which now and then chooses a port that is taken."""
    for _ in range(10):
        driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        for line in driver.stdout:
            if "successfully on port" in line:
                return driver, line.split()[-1].rstrip(".")
        driver.wait()
    sys.exit("chromedriver does not start")


@contextlib.contextmanager
def browser():
    driver, port = start_driver()
    try:
        opened = Browser(port)
        try:
            yield opened
        finally:
            urllib.request.urlopen(urllib.request.Request(opened.url, method="DELETE"), timeout=60)
    finally:
        driver.terminate()
        driver.wait()


@contextlib.contextmanager
def service(body):
    """Answers every GET with the body, and lists the requested paths."""
    paths = []

    class Handler(http.server.BaseHTTPRequestHandler):
        def do_GET(self):
            paths.append(self.path)
            self.send_response(200)
            self.send_header("Content-Length", str(len(body)))
            self.end_headers()
            self.wfile.write(body)

        def log_message(self, *_):
            pass

    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        yield f"http://127.0.0.1:{server.server_port}", paths
        server.shutdown()


def write_page(orvane, page, *arguments):
    command = [orvane, "assembly", *arguments, "--html", str(page)]
    subprocess.run(command, check=True, env={"ORVANE_TOKEN": "t"} if "--service" in arguments else {})
    return page.as_uri()


def expect(what, value, wanted):
    if value != wanted:
        sys.exit(f"{what}: {value!r}, not {wanted!r}")


VISIBLE = "return [...document.querySelectorAll('%s')].filter(element => element.checkVisibility()).length"


def check_sample(window, orvane, folder):
    window.open(write_page(orvane, folder / "sample.html", "urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7"))
    expect("boxes", window.run(VISIBLE % ".box"), 11)
    expect("files", window.run(VISIBLE % ".file"), 26)
    window.type("input", "pg-")
    expect("filtered files", window.run(VISIBLE % ".file"), 3)
    expect("boxes of filtered files", window.run(VISIBLE % ".box"), 4)
    expect("count", window.run("return document.querySelector('output').textContent"), "3 of 26 files")
    hidden = "document.querySelector('.file[hidden]')"
    window.run(f"location.hash = {hidden}.id")
    time.sleep(0.2)
    expect("whether the target of a link is open", window.run("return document.querySelector('.file:target').open"), True)
    expect("filter after following the link", window.run("return document.querySelector('input').value"), "")


def assembly(files, folders=()):
    """The service's answer: an assembly of files in folders, each given by its members besides the type."""
    elements = [{"type": "files", "parent": {"type": "folders", "id": "folder"}, **file} for file in files]
    included = {"files": elements, "folders": [{"type": "folders", **folder} for folder in folders]}
    return json.dumps({"data": {"id": "v"}, "included": included}).encode()


def check_many_files(window, orvane, folder):
    body = assembly([{"id": f"f{number}", "name": f"name {number}"} for number in range(8000)])
    with service(body) as (url, _):
        window.open(write_page(orvane, folder / "many.html", "v", "--service", url))
    start = time.monotonic()
    window.type("input", "name 19")
    expect("filtered files", window.run(VISIBLE % ".file"), 111)
    if time.monotonic() - start > 10:
        sys.exit("filtering 8,000 files takes more than 10 seconds")


def check_hostile_names(window, orvane, folder):
    leak = "<img src=URL/leak onerror=document.title=1><script>document.title=1</script>"
    names = [leak, "</style>" + leak, "</script>" + leak, "'\"><svg onload=document.title=1>" + leak, "]]>--><!--" + leak]
    with service(b"") as (url, paths):
        names = [name.replace("URL", url) for name in names]
        files = [
            {"id": f"{place}{name}", "name": name, "parent": {"type": "folders", "id": name}}
            for place, name in enumerate(names)
        ]
        with service(assembly(files, [{"id": name, "name": name} for name in names])) as (good_url, _):
            window.open(write_page(orvane, folder / "hostile.html", "v", "--service", good_url))
        expect("hostile names", window.run(VISIBLE % ".file"), len(names))
        expect("title", window.run("return document.title"), "Full assembly")
        expect("elements", window.run("return document.querySelectorAll('img, svg, main script').length"), 0)
        # Even markup that found its way into the page would neither run nor load anything.
        window.run(f"document.body.insertAdjacentHTML('beforeend', `{leak.replace('URL', url)}`)")
        time.sleep(0.5)
        expect("title after injection", window.run("return document.title"), "Full assembly")
        expect("requests", paths, [])


def main(orvane):
    with tempfile.TemporaryDirectory() as folder, browser() as window:
        check_sample(window, orvane, pathlib.Path(folder))
        check_many_files(window, orvane, pathlib.Path(folder))
        check_hostile_names(window, orvane, pathlib.Path(folder))


main(sys.argv[1])
