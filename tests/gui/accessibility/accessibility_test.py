#!/usr/bin/python3
"""A visit to every window with a screen reader: what it is told, and the way from the search to the
test report by what it can press.

Called with the program and a scenario of simulated terminals, in a session bus of its own. The
interpreter is the system's: its packages have the bindings.
"""

import sys


from rules import faults
from screen_reader import Atspi, Reader, find, look_into

MAIN = "KartoCheck"
INFORMATION = "Benutzer Information zu KartoCheck"
RESULT = "KartoCheck Ergebnis"
EGK = "Info eGK Daten"
ABOUT = "Info zu KartoCheck"


class Visit:
    def __init__(self, reader):
        self.reader = reader
        self.visited = []
        self.faults = []

    def expect(self, holds, sentence):
        if not holds:
            self.faults.append(sentence)

    def examine(self, window):
        self.visited.append(window.name.strip())
        self.faults.extend(fault for fault in faults(window) if fault not in self.faults)

    def main(self):
        return self.reader.window(MAIN)

    def press(self, name, window=MAIN, role="push button"):
        find(self.reader.window(window), role, name).press()

    def wait_for_status(self, text):
        self.reader.wait(f"the status '{text}'", lambda: self.status.get_name() == text)

    def value(self, label):
        return find(self.main(), "text", label).text()

    def wait_for_value(self, label, text):
        field = find(self.main(), "text", label)
        self.reader.wait(f"{label} '{text}'", lambda: field.text() == text)

    def answer_until(self, arrived, answer):
        """Answers every box until the condition holds; returns what the boxes said."""
        told = []

        def step():
            boxes = self.reader.boxes()
            if not boxes:
                return arrived()
            box = look_into(boxes[-1])
            self.examine(box)
            text = "\n".join(element.name for element in box.all() if element.role == "label")
            told.append(text)
            button = answer(text)
            names = [element.name for element in box.all() if element.role == "push button"]
            find(box, "push button", button if button in names else names[0]).press()
            self.reader.wait(
                "the end of the box",
                lambda: all(open.accessible != box.accessible for open in self.reader.boxes()),
            )
            return False

        self.reader.wait("the end of the action", step)
        return told

    def menu_entry(self, menu, entry):
        """Chooses an entry of a menu that is not opened for it, as screen readers do."""
        item = find(self.main(), "menu item", menu).accessible
        popup = item.get_child_at_index(0)
        for index in range(popup.get_child_count()):
            child = popup.get_child_at_index(index)
            if child.get_name() == entry:
                assert child.do_action(0), entry
                return
        raise AssertionError(f"{menu} has no entry {entry}")

    # The way of a user.

    def start(self):
        self.examine(self.reader.window(INFORMATION))
        self.press("Weiter mit KartoCheck", INFORMATION)
        window = self.main()
        self.examine(window)
        bar = [element for element in window.all() if element.role == "status bar"][0]
        captions = [element.name for element in bar.children]
        self.status = bar.children[captions.index("Status:") + 1].accessible
        buttons = [element.name for element in window.all() if element.role == "push button"]
        wanted = ["Prüfen", "Diagnose", "Status", "Lesen", "Kopieren", "Zurücksetzen", EGK]
        self.expect(buttons == wanted, f"the buttons are {buttons}")
        lamps = [element.name for element in window.all() if element.role == "image"]
        off = ["Kartenzugriff: keine Verbindung", "MKT-Zugriff: keine Verbindung"]
        self.expect(lamps == off, f"the lamps are {lamps}")
        for field in (element for element in window.all() if element.role == "text"):
            named = field.name in field.related("labelled-by") or field.name == "Hinweis:"
            self.expect(named, f"{field} has no label")
            self.expect(field.has_text(), f"{field} has no text to read")

    def about(self):
        self.menu_entry("Hilfe", "Info...")
        self.examine(self.reader.window(ABOUT))
        self.press("OK", ABOUT)
        self.reader.wait_until_closed(ABOUT)

    def scan(self):
        self.press("Prüfen")
        # The record of the mobile terminal may be erased; nobody puts in a further card.
        self.answer_until(
            lambda: self.reader.is_open(RESULT),
            lambda text: "Ja" if "gelöscht" in text else "Abbrechen",
        )
        result = self.reader.window(RESULT)
        self.examine(result)
        lines = [element.name for element in result.all() if element.role == "label"]
        self.expect(
            any(line.startswith("An COM 1 Chipkartenleser gefunden.") for line in lines),
            f"the result says {lines}",
        )
        self.expect("1" not in lines, "the number over the gap is told twice")
        # Which of a lamp's states is still there when it is asked for is a matter of time.
        renamed = {name.split(":")[0] for role, name in self.reader.renamed if role == "image"}
        self.expect(
            {"Kartenzugriff", "MKT-Zugriff"} <= renamed,
            f"of the lamps only {renamed} told that they changed",
        )
        self.press("Schließen", RESULT)
        self.reader.wait_until_closed(RESULT)
        self.wait_for_value("Vorname:", "Erika")
        self.examine(self.main())

    def choose(self, port):
        self.press(port, role="radio button")
        self.wait_for_status(f"Die serielle Schnittstelle {port} wurde ausgewählt")
        ports = [element for element in self.main().all() if element.role == "radio button"]
        chosen = [element.name for element in ports if "checked" in element.states]
        self.expect(chosen == [port], f"chosen are {chosen}")

    def read(self):
        self.press("Zurücksetzen")
        self.wait_for_status("Die Anzeigefelder wurden zurückgesetzt")
        self.wait_for_value("Vorname:", "")
        described = find(self.main(), "text", "Vorname:").description
        self.expect(described == "leer", f"an empty field says '{described}'")
        self.press("Lesen")
        self.wait_for_value("Vorname:", "Jörg-Peter")
        self.wait_for_status("Die Krankenversichertendaten werden angezeigt")

    def copy(self):
        self.press("Kopieren")
        self.wait_for_status("Die Krankenversichertendaten wurden in die Zwischenablage kopiert")

    def view(self, name):
        self.press(name, EGK, "radio button")

        def is_checked():
            return "checked" in find(self.reader.window(EGK), "radio button", name).states

        self.reader.wait(f"the view {name}", is_checked)
        window = self.reader.window(EGK)
        self.examine(window)
        return window

    def egk_window(self):
        self.press(EGK)
        window = self.reader.window(EGK)
        self.examine(window)
        find(window, "table", "Elementliste")
        window = self.view("VD")
        checked = {
            element.name
            for element in window.all()
            if element.role == "radio button" and "checked" in element.states
        }
        self.expect(checked == {"VD", "Elementliste"}, f"chosen are {checked}")
        described = find(window, "radio button", "PD").description
        self.expect("Persönliche Versichertendaten" in described, f"PD is described: {described}")
        window = self.view("XML-Texte")
        texts = [element.text() for element in window.all() if element.role == "text"]
        self.expect(any("<" in text for text in texts), "the XML texts cannot be read")
        window = self.view("ICC Info")
        lines = [element.name for element in window.all() if element.role == "label"]
        self.expect(any(line.startswith("ICC Serial Number:") for line in lines), f"{lines}")
        self.press("Hilfe", EGK)
        box = look_into(self.reader.wait("the help", self.reader.boxes)[0])
        self.examine(box)
        find(box, "push button", "OK").press()
        self.reader.wait("the end of the help", lambda: not self.reader.boxes())
        self.press("Schließen", EGK)
        self.reader.wait_until_closed(EGK)

    def diagnosis(self):
        self.press("Diagnose")
        other = find(self.main(), "push button", "Lesen").accessible

        def is_idle():
            return other.get_state_set().contains(Atspi.StateType.ENABLED)

        self.reader.wait("the begin of the diagnosis", lambda: not is_idle())
        self.examine(self.main())
        told = self.answer_until(is_idle, lambda text: "Ja")
        self.expect(told, "the diagnosis told nothing")
        self.wait_for_status("Der MKT Status wird angezeigt")
        window = self.main()
        self.examine(window)
        find(window, "page tab list", "COM 1")  # named by the tab that is chosen
        self.expect(self.value("Hersteller:"), "the status of the port cannot be read")

    def report(self):
        self.menu_entry("Hilfe", "Prüfbericht kopieren")
        self.wait_for_status("Der Prüfbericht wurde in die Zwischenablage kopiert")

    def quit(self):
        self.menu_entry("Datei", "Beenden")
        box = look_into(self.reader.wait("the question", self.reader.boxes)[0])
        self.examine(box)
        find(box, "push button", "Ja").press()
        status = self.reader.exit_status()
        self.expect(status == 0, f"the program ended with {status}")


def main(program, scenario):
    reader = Reader(program, "--simulate", scenario)
    visit = Visit(reader)
    try:
        visit.start()
        visit.about()
        visit.scan()
        visit.choose("COM 2")
        visit.read()
        visit.copy()
        visit.choose("COM 1")
        visit.egk_window()
        visit.diagnosis()
        visit.report()
        visit.quit()
    finally:
        reader.close()
        print("visited:", ", ".join(visit.visited))
        for fault in visit.faults:
            print(fault, file=sys.stderr)
    return 1 if visit.faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
