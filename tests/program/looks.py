"""What is wrong with a dialog's looks: controls outside it or over each other, texts that are cut, and controls that
going round once by the tab key does not reach, though it should."""

from desktop import VK_TAB, Window, call, focused, numbers_in, press

WS_TABSTOP, WS_DISABLED, WS_VISIBLE, BS_GROUPBOX, SS_ETCHEDFRAME = 0x10000, 0x08000000, 0x10000000, 7, 0x12
GWL_STYLE, GWL_HINSTANCE, WM_GETFONT, DT_CALCRECT = -16, -6, 0x31, 0x400
FRAMES = ("Button", BS_GROUPBOX), ("Static", SS_ETCHEDFRAME)


def style(window):
    return window.get("GetWindowLongA", GWL_STYLE)


def is_own(dialog):
    """Whether the program brought it along: message boxes and file dialogs are the system's."""
    return dialog.get("GetWindowLongPtrA", GWL_HINSTANCE) == call("GetModuleHandleA", 0)


def text_size(control):
    """The width and height of the text in its font, an access key's mark left out."""
    dc, bounds = control.get("GetDC"), bytearray(16)
    call("SelectObject", dc, control.send(WM_GETFONT))
    call("DrawTextA", dc, control.text(), -1, bounds, DT_CALCRECT)
    control.get("ReleaseDC", dc)
    return numbers_in(bounds)[2:]


def layout_faults(dialog):
    client, seen = bytearray(16), []
    dialog.get("GetClientRect", client)
    _, _, right_end, bottom_end = numbers_in(client)
    for control in filter(Window.visible, dialog.children()):
        left, top, right, bottom = control.place(dialog)
        kind, name = control.kind(), f"{control.kind()} {control.identifier()} {control.text()!r}"
        if left < 0 or top < 0 or right > right_end or bottom > bottom_end:
            yield name + " reaches outside"
        width, height = text_size(control)
        if kind in ("Static", "Button") and (width > right - left or height > bottom - top):
            yield name + " is cut"
        if kind == "msctls_updown32" or (kind, style(control) & 0x1F) in FRAMES:
            continue  # the one goes into the border of its edit, the other around controls
        for other, (other_left, other_top, other_right, other_bottom) in seen:
            if left < other_right and other_left < right and top < other_bottom and other_top < bottom:
                yield f"{name} covers {other}"
        seen.append((name, (left, top, right, bottom)))


def unreached_by_tab(dialog):
    stops = [child for child in dialog.children()
             if style(child) & (WS_TABSTOP | WS_VISIBLE | WS_DISABLED) == WS_TABSTOP | WS_VISIBLE]
    reached = []
    for _ in stops:
        reached.append(focused(dialog))
        press(VK_TAB)
    return [f"tab does not reach {stop.identifier()}" for stop in stops if stop not in reached]


def looks(program):
    """Checks the window in front."""
    faults = [*layout_faults(program.screen), *unreached_by_tab(program.screen)]
    assert not faults, (program.screen.text(), faults)
