#!/usr/bin/env python3
"""The pictures of docs/conversations.md: who sends which message to whom, and when.

    conversations.py --write [FOLDER]    draws them, into docs/conversations without a folder
    conversations.py --check             compares what is there; the page shows each of them, and no other

A scene is a title and steps from top to bottom. A step is a message, (to, SENT or POSTED, name, what it carries), or
what a side does: (CLIENT or SERVER, text).
"""
import pathlib
import re
import sys
from xml.sax.saxutils import escape

DOCS = pathlib.Path(__file__).resolve().parents[1] / "docs"
CLIENT, SERVER = "client", "server"
SENT, POSTED = "sent", "posted"

SCENES = {
    "begin": ("A conversation begins", [
        (CLIENT, "adds the atoms of application and topic"),
        (SERVER, SENT, "WM_DDE_INITIATE", "client's window; application, topic"),
        (SERVER, "has the service, and vb_Initiate agrees"),
        (CLIENT, SENT, "WM_DDE_ACK", "server's window; application, topic"),
        (CLIENT, "takes this server if it is the first"),
        (SERVER, "lists the client"),
        (CLIENT, "deletes its atoms when all windows have been told")]),
    "request": ("An item is asked for", [
        (CLIENT, "adds the item's atom, sets a timer"),
        (SERVER, POSTED, "WM_DDE_REQUEST", "client's window; format 1, item"),
        (SERVER, "vb_Request: v_SendData"),
        (CLIENT, POSTED, "WM_DDE_DATA", "server's window; block, item"),
        (CLIENT, "copies the text, frees the block (fRelease), deletes the atom")]),
    "refusal": ("An item is refused", [
        (CLIENT, "adds the item's atom, sets a timer"),
        (SERVER, POSTED, "WM_DDE_REQUEST", "client's window; format 1, item"),
        (SERVER, "vb_Request gives 0"),
        (CLIENT, POSTED, "WM_DDE_ACK", "server's window; status 0, item"),
        (CLIENT, "deletes the atom: b_DDERequest gives 0")]),
    "advise": ("A link, which other programs may keep", [
        (SERVER, POSTED, "WM_DDE_ADVISE", "client's window; block of options, item"),
        (CLIENT, POSTED, "WM_DDE_ACK", "server's window; status 8000h, item"),
        (SERVER, "the item's value changes"),
        (CLIENT, POSTED, "WM_DDE_DATA", "server's window; block, item"),
        (SERVER, POSTED, "WM_DDE_UNADVISE", "client's window; format, item"),
        (CLIENT, POSTED, "WM_DDE_ACK", "server's window; status 8000h, item")]),
    "poke": ("A value is given", [
        (CLIENT, "adds the item's atom, makes the block"),
        (SERVER, POSTED, "WM_DDE_POKE", "client's window; block, item"),
        (SERVER, "vb_Poke; frees the block where fRelease is set"),
        (CLIENT, POSTED, "WM_DDE_ACK", "server's window; status 8000h or 0, item"),
        (SERVER, "vv_AfterPoke, if vb_Poke has set an ordinal")]),
    "execute": ("A command is carried out", [
        (CLIENT, "makes the block, sets a timer"),
        (SERVER, POSTED, "WM_DDE_EXECUTE", "client's window; block of the command"),
        (SERVER, "takes it from its message loop: CT_DDEServer passes it by"),
        (CLIENT, POSTED, "WM_DDE_ACK", "server's window; status 8000h or 0, the same block"),
        (CLIENT, "frees the block: b_DDEExecute gives bit 15")]),
    "terminate": ("A conversation ends", [
        (SERVER, POSTED, "WM_DDE_TERMINATE", "client's window"),
        (SERVER, "vv_Terminate; takes the client off the list"),
        (CLIENT, POSTED, "WM_DDE_TERMINATE", "server's window"),
        (CLIENT, "has waited for it, three seconds at most")]),
    "timeout": ("The time is out", [
        (CLIENT, "adds the item's atom, sets a timer"),
        (SERVER, POSTED, "WM_DDE_REQUEST", "client's window; format 1, item"),
        (SERVER, "is busy, stopped or gone"),
        (CLIENT, "WM_TIMER: deletes the atom, b_DDERequest gives 0"),
        (CLIENT, POSTED, "WM_DDE_DATA", "too late: taken for the next answer, so end here")]),
}

WIDTH, LEFT, RIGHT, TOP = 640, 90, 550, 62
MESSAGE, ACTION = 44, 26
STYLE = """<style>
svg { color-scheme: light dark }
text { font: 12px system-ui, sans-serif; fill: #24292f }
.title { font-size: 14px; font-weight: bold }
.side { font-weight: bold; text-anchor: middle }
.name { font-family: ui-monospace, monospace; text-anchor: middle }
.with { font-size: 11px; fill: #57606a; text-anchor: middle }
.left { text-anchor: start }
.right { text-anchor: end }
.life { stroke: #8c959f; stroke-dasharray: 3 4 }
.sent { stroke: #0969da; fill: #0969da; stroke-width: 1.6 }
.posted { stroke: #1a7f37; fill: #1a7f37; stroke-width: 1.6; stroke-dasharray: 7 4 }
.head { stroke: none }
.dot { fill: #57606a }
@media (prefers-color-scheme: dark) {
  text { fill: #e6edf3 }
  .with { fill: #9198a1 }
  .sent { stroke: #4493f8; fill: #4493f8 }
  .posted { stroke: #3fb950; fill: #3fb950 }
  .head { stroke: none }
  .dot { fill: #9198a1 }
}
</style>"""


def draw_message(y, to, way, name, what):
    start, end = (LEFT, RIGHT) if to == SERVER else (RIGHT, LEFT)
    back = -9 if to == SERVER else 9
    middle = (LEFT + RIGHT) // 2
    return [f'<text class="name" x="{middle}" y="{y - 6}">{escape(name)}</text>',
            f'<line class="{way}" x1="{start}" x2="{end + back}" y1="{y}" y2="{y}"/>',
            f'<path class="{way} head" d="M{end} {y}l{back} -5v10z"/>',
            f'<text class="with" x="{middle}" y="{y + 15}">{escape(what)}</text>']


def draw_action(y, side, text):
    x, inner, anchor = (LEFT, LEFT + 12, "left") if side == CLIENT else (RIGHT, RIGHT - 12, "right")
    return [f'<circle class="dot" cx="{x}" cy="{y}" r="4"/>',
            f'<text class="{anchor}" x="{inner}" y="{y + 4}">{escape(text)}</text>']


def picture(title, steps):
    y = TOP
    parts = []
    for step in steps:
        y += MESSAGE // 2 if len(step) == 4 else ACTION // 2
        parts += draw_message(y, *step) if len(step) == 4 else draw_action(y, *step)
        y += MESSAGE // 2 if len(step) == 4 else ACTION // 2
    height = y + 34
    ways = {step[1] for step in steps if len(step) == 4}
    legend = "; ".join(text for way, text in ((SENT, "solid: sent, and answered within"), (POSTED, "broken: posted"))
                       if way in ways)
    return "\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" width="{WIDTH}" height="{height}" '
        'role="img">', STYLE, f"<title>{escape(title)}</title>",
        f'<text class="title" x="12" y="20">{escape(title)}</text>',
        f'<text class="side" x="{LEFT}" y="44">client</text>', f'<text class="side" x="{RIGHT}" y="44">server</text>',
        *(f'<line class="life" x1="{x}" x2="{x}" y1="52" y2="{y + 6}"/>' for x in (LEFT, RIGHT)), *parts,
        f'<text class="with" x="{(LEFT + RIGHT) // 2}" y="{height - 8}">{escape(legend)}</text>', "</svg>", ""])


def pictures():
    return {f"{name}.svg": picture(*scene) for name, scene in SCENES.items()}


def check():
    wrong = []
    folder = DOCS / "conversations"
    for name, text in pictures().items():
        if not (folder / name).exists() or (folder / name).read_text("utf-8") != text:
            wrong.append(f"docs/conversations/{name} isn't what tools/conversations.py draws")
    there = {path.name for path in folder.iterdir()}
    shown = set(re.findall(r"\]\(conversations/([^)]+)\)", (DOCS / "conversations.md").read_text("utf-8")))
    wrong += [f"docs/conversations/{name} comes from nowhere" for name in sorted(there - set(pictures()))]
    wrong += [f"docs/conversations.md doesn't show {name}" for name in sorted(set(pictures()) - shown)]
    return wrong


def main():
    if sys.argv[1:2] == ["--write"] and len(sys.argv) <= 3:
        folder = pathlib.Path(sys.argv[2]) if len(sys.argv) == 3 else DOCS / "conversations"
        folder.mkdir(exist_ok=True)
        for name, text in pictures().items():
            (folder / name).write_text(text, "utf-8")
        return 0
    if sys.argv[1:] == ["--check"]:
        wrong = check()
        print("\n".join(wrong), end="\n" if wrong else "")
        return bool(wrong)
    sys.exit(__doc__)


if __name__ == "__main__":
    sys.exit(main())
