"""What holds for every window, whoever reads it."""

# Elements that are only there to hold others; no screen reader tells them.
SILENT_ROLES = {"application", "filler", "frame", "layered pane", "unknown"}


def caption(text):
    return " ".join(text.split()).rstrip(":")


def belong_together(one, other):
    """One is the other's label, and is told with it."""
    return other.name in one.related("label-for") or other.name in one.related("labelled-by")


def faults_of_element(element):
    if element.is_focusable and not (element.name.strip() or element.related("labelled-by")):
        yield "can have the focus, and no name"
    if element.name and caption(element.name) == caption(element.description):
        yield "is told twice: its description is its name"
    if element.role == "text" and "read-only" not in element.states:
        yield "looks as if it could be changed"
    if element.role == "text" and not element.text() and element.description != "leer":
        yield "is empty and does not say so"
    is_button = element.role == "push button" and "enabled" in element.states
    if is_button and "Press" not in element.actions():
        yield "cannot be pressed"
    if element.role in ("list", "table") and element.is_focusable and not element.children:
        yield "is empty and a tab stop"


def faults_of_children(element):
    named = [child for child in element.children if child.name and child.role not in SILENT_ROLES]
    for child in named:
        # A row of tabs has the name of the tab that is chosen: it is what has the focus.
        inside = element.role not in SILENT_ROLES | {"page tab list"}
        if inside and caption(child.name) == caption(element.name):
            yield f"is told twice: as {child} within it"
    for index, one in enumerate(named):
        for other in named[index + 1 :]:
            is_same = caption(one.name) == caption(other.name)
            is_label = "label" in (one.role, other.role)
            if is_same and is_label and not belong_together(one, other):
                yield f"is told twice: {one} and {other} within it"


def faults(window):
    """Sentences about what is wrong with the window; none where all is well."""
    for element in window.all():
        for fault in (*faults_of_element(element), *faults_of_children(element)):
            yield f"{window}: {element} {fault}"
