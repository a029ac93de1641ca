#!/usr/bin/python3
"""A browser window of WebKitGTK without controls, for WebDriver. MiniBrowser would print no console messages.

The folder in the environment variable VELMORA_FOLDER holds before.js, a script that runs before the scripts of each
page. The browser writes the console messages of scripts to the file console, a line each. It saves files to the folder
downloads. Pages have WebGL if VELMORA_WEBGL is 1, and an imitated camera if VELMORA_CAMERA is 1.
"""

import os

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("WebKit2", "4.1")
from gi.repository import Gtk, WebKit2  # noqa: E402

folder = os.environ["VELMORA_FOLDER"]
has_camera = os.environ["VELMORA_CAMERA"] == "1"

# The engine writes no console messages of a page under automation, so this script reports them.
REPORT_CONSOLE = """(() => {
    const handler = window.webkit.messageHandlers.console;
    const report = (type, text) => handler.postMessage(`${type}: ${text}`.replaceAll("\\n", " "));
    for (const [call, type] of Object.entries(
        { log: "log", info: "info", debug: "debug", warn: "warning", error: "error" })) {
        const write = console[call].bind(console);
        console[call] = (...parts) => (report(type, parts.join(" ")), write(...parts));
    }
    window.addEventListener("error", (event) => report("error", event.message));
    window.addEventListener("unhandledrejection", (event) => report("error", event.reason));
})()"""


def create_view(session):
    manager = WebKit2.UserContentManager()
    manager.connect("script-message-received::console", write_message)
    manager.register_script_message_handler("console")
    with open(f"{folder}/before.js", encoding="utf8") as before:
        for script in (REPORT_CONSOLE, before.read()):
            manager.add_script(WebKit2.UserScript(
                script, WebKit2.UserContentInjectedFrames.TOP_FRAME, WebKit2.UserScriptInjectionTime.START))
    view = WebKit2.WebView(is_controlled_by_automation=True, web_context=context, user_content_manager=manager)
    settings = view.get_settings()
    settings.set_enable_mock_capture_devices(has_camera)
    settings.set_enable_webgl(os.environ["VELMORA_WEBGL"] == "1")
    view.connect("permission-request", answer)
    window = Gtk.Window(decorated=False)
    window.add(view)
    window.show_all()
    window.present()  # no window manager runs, so the window must request the focus itself
    return view


def write_message(manager, result):
    with open(f"{folder}/console", "a", encoding="utf8") as messages:
        messages.write(result.get_js_value().to_string() + "\n")


def answer(view, request):
    if has_camera:
        request.allow()
    else:
        request.deny()
    return True


def save(download, name):
    download.partial = f"{folder}/{name}"
    download.set_destination(f"file://{download.partial}")
    return True


def start_download(context, download):
    download.connect("decide-destination", save)
    download.connect("finished", lambda one: os.rename(one.partial, f"{folder}/downloads/{os.path.basename(one.partial)}"))


def start_session(context, session):
    information = WebKit2.ApplicationInfo()
    information.set_name("webkit_browser")
    session.set_application_info(information)
    session.connect("create-web-view", create_view)


open(f"{folder}/console", "w", encoding="utf8").close()
context = WebKit2.WebContext.get_default()
context.set_automation_allowed(True)
context.connect("automation-started", start_session)
context.connect("download-started", start_download)
Gtk.main()
