"""The built program as an assistive technology meets it, over the accessibility bus: what it is told
of each control and what it does with them, without a mouse, a keyboard or a look at the screen.

An action that waited for what it opens would not answer within the client's time-out and so fail.
"""

import contextlib
import os
import unittest

os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
import gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib

from desk import TITLE, until
from scenes import Scene

PRESSED = ["Press", "SetFocus"]
STEPPED = ["SetFocus", "Increase", "Decrease"]


class Control:
    """One object of the tree."""

    def __init__(self, accessible):
        self.it = accessible
        self.role, self.name = accessible.get_role_name(), accessible.get_name()

    def children(self):
        found = [self.it.get_child_at_index(i) for i in range(self.it.get_child_count())]
        return [Control(child) for child in found if child]

    def all(self):
        yield self
        for child in self.children():
            yield from child.all()

    def states(self):
        return {state.value_nick for state in self.it.get_state_set().get_states()}

    def text(self):
        return Atspi.Text.get_text(self.it, 0, Atspi.Text.get_character_count(self.it))

    def number(self):
        return Atspi.Value.get_current_value(self.it)

    def range(self):
        return ("Value" in self.it.get_interfaces() and
                (Atspi.Value.get_minimum_value(self.it), Atspi.Value.get_maximum_value(self.it)))

    def actions(self):
        count = Atspi.Action.get_n_actions(self.it)
        return [Atspi.Action.get_action_name(self.it, i) for i in range(count)]

    def do(self, name):
        assert Atspi.Action.do_action(self.it, self.actions().index(name)), f"{name} {self.name}"

    def chosen(self):
        return [child.name for child in self.children() if "selected" in child.states()]


class Session(Scene):
    def setUp(self):
        super().setUp()
        self.application = until("the program is on the bus", self._find_application)
        self.application.it.set_cache_mask(Atspi.Cache.NONE)

    def _find_application(self):
        return next((program for program in Control(Atspi.get_desktop(0)).children()
                     if program.name == "sorvex-mackie-setup" and program.children()), None)

    def control(self, role, name=None):
        """None also where the tree changes during the walk."""
        with contextlib.suppress(GLib.Error):
            return next((control for control in self.application.all()
                         if control.role == role and name in (None, control.name)), None)

    def listen(self, *types):
        """Collects events of these types as (type, role, name); hear() waits for one."""
        self.events = []
        def note(event):
            with contextlib.suppress(GLib.Error):  # its source may have gone
                self.events.append((event.type, event.source.get_role_name(), event.source.get_name()))
        listener = Atspi.EventListener.new(note)
        for kind in types:
            listener.register(kind)
            self.addCleanup(listener.deregister, kind)

    def hear(self, *event):
        def heard():
            while GLib.MainContext.default().iteration(False):
                pass
            return event in self.events
        until(f"{event} is heard", heard)

    def answer_alert(self, text, answer):
        alert = until("an alert is shown", lambda: self.control("alert"))
        self.assertIn(text, [c.name for c in alert.all() if c.role == "label"])
        self.assertTrue({"showing", "active"} <= alert.states())
        [c for c in alert.all() if c.role == "push button" and c.name == answer][0].do("Press")
        until("the alert is closed", lambda: not self.control("alert"))


class SettingsWindow(Session):
    def setUp(self):
        super().setUp()
        self.pop_up = self.control("combo box")
        self.group = self.control("spin button", "Group")
        self.position = self.control("spin button", "Group position")
        self.ok = self.control("push button", "Ok")

    def test_each_control_tells_what_it_is_and_what_can_be_done_with_it(self):
        window = self.control("frame")
        self.assertEqual(window.name, TITLE)
        told = [(c.role, c.name, c.range(), c.actions()) for c in window.all()
                if c.role not in ("frame", "filler", "list item")]
        self.assertEqual(told, [
            ("combo box", "Edit settings for", False, PRESSED),
            ("spin button", "Group", (0, 127), STEPPED),
            ("spin button", "Group position", (0, 127), STEPPED),
            *(("push button", name, False, PRESSED) for name in ("Help", "Cancel", "Ok"))])
        for control in (self.pop_up, self.group, self.position, self.ok):
            self.assertTrue({"enabled", "focusable", "showing"} <= control.states(), control.name)
        names = [surface["name"] for surface in self.studio.surfaces()]
        self.assertEqual([item.name for item in self.pop_up.children()], names)
        self.assertEqual((self.pop_up.chosen(), self.pop_up.text()), (names[:1], names[0]))
        self.assertEqual((self.group.number(), self.position.number()), self.studio.settings()[0])

    def test_the_second_surface_is_edited_and_stored(self):
        self.listen("object:selection-changed", "object:property-change:accessible-value")
        second = self.pop_up.children()[1]
        second.do("Press")
        self.hear("object:selection-changed", "combo box", self.pop_up.name)
        self.assertEqual((self.pop_up.chosen(), self.pop_up.text()), ([second.name], second.name))
        Atspi.Value.set_current_value(self.group.it, 7)
        self.hear("object:property-change:accessible-value", "spin button", "Group")
        self.group.do("Increase")
        until("the number is stepped", lambda: self.group.number() == 8)
        Atspi.EditableText.set_text_contents(self.position.it, "5")
        until("the text is entered", lambda: self.position.text() == "5")
        self.ok.do("Press")
        self.assertEqual(self.program.await_end(), "")
        self.assertEqual(self.studio.settings()[1], (8, 5))

    def test_the_items_of_the_open_list_are_heard_read_and_chosen(self):
        self.listen("object:state-changed:focused")
        items = self.pop_up.children()
        self.pop_up.do("Press")
        self.hear("object:state-changed:focused", "list item", items[0].name)
        self.assertIn("expanded", self.pop_up.states())
        self.program.key("Down", "Down")
        self.hear("object:state-changed:focused", "list item", items[2].name)
        self.assertEqual([item.name for item in self.pop_up.children()], [i.name for i in items])
        self.assertTrue({"focused", "showing"} <= items[2].states())
        self.assertEqual(items[2].it.get_parent(), self.pop_up.it)
        self.events.clear()
        items[1].do("Press")
        self.hear("object:state-changed:focused", "combo box", self.pop_up.name)
        until("the item is chosen", lambda: self.pop_up.chosen() == [items[1].name])
        until("the list is closed", lambda: "collapsed" in self.pop_up.states())

    def test_what_is_out_of_range_is_refused_like_what_is_typed(self):
        before = self.group.number()
        refusal = "Value must be between 0 and 127."
        Atspi.Value.set_current_value(self.group.it, 128)
        self.answer_alert(refusal, "OK")
        self.assertEqual(self.group.number(), before)
        Atspi.EditableText.set_text_contents(self.group.it, "999")
        until("the text is entered", lambda: self.group.text() == "999")
        self.ok.do("Press")
        self.answer_alert(refusal, "OK")
        self.assertTrue(self.program.is_running(), "the press did not act")
        self.assertEqual(self.group.number(), before)
        Atspi.EditableText.set_text_contents(self.group.it, "4x")
        Atspi.EditableText.set_text_contents(self.group.it, "500")
        until("the text is entered", lambda: self.group.text() == "500")
        self.pop_up.do("SetFocus")
        until("an alert is shown", lambda: self.control("alert"))
        self.ok.do("Press")
        self.answer_alert(refusal, "OK")
        self.assertTrue(self.program.is_running(), "the alert was in front")


class NoSurfaces(Session):
    with_surfaces = False

    def test_the_question_is_read_and_answered(self):
        self.answer_alert("No compatible surfaces are installed.\n\n"
                          "Do you want to view the help file?", "Yes")
        until("the help document is opened", self.studio.opened_documents)


if __name__ == "__main__":
    unittest.main(verbosity=2, warnings="ignore")
