"""The built program in a real window: what a person does with it, and what is stored afterwards."""

import unittest

from desk import (CANCEL, GROUP, HELP, OK, POSITION, SURFACES, Program, Studio, keep_picture,
                  set_text_scale, until)


class Scene(unittest.TestCase):
    with_surfaces = True

    def setUp(self):
        self.studio = Studio(self.with_surfaces)
        self.addCleanup(self.studio.close)
        self.program = self.start(awaits_window=self.with_surfaces)

    def start(self, awaits_window=True, scale=1):
        program = Program(self.studio, awaits_window, scale)
        self.addCleanup(program.kill)
        return program

    def assertEndsSilently(self, program):
        self.assertEqual(program.await_end(), "")

    def choose_second_surface(self, picture):
        """Once the pop-up opens."""
        before = self.program.shown_surface()
        until("the pop-up is open", lambda: len(self.program.windows()) > 1)
        keep_picture(picture)
        self.program.key("Down", "Return")
        until("another surface is shown", lambda: self.program.shown_surface() != before)
        self.program.await_no_alert()


class SettingsWindow(Scene):
    def assertInside(self, ink, x, y, width, height):
        self.assertIsNotNone(ink)
        left, top, right, bottom = ink
        self.assertTrue(x <= left and y <= top and right <= x + width and bottom <= y + height, ink)

    def test_captions_stand_where_they_belong(self):
        keep_picture("settings-window")
        self.assertCaptionsStandWhereTheyBelong(self.program.ink)

    def test_larger_text_makes_the_whole_window_larger(self):
        self.program.kill()
        self.addCleanup(set_text_scale, 1)
        for scale in (1.5, 2):
            set_text_scale(scale)
            program = self.start(scale=scale)
            keep_picture(f"text-scale-{scale}")
            self.assertCaptionsStandWhereTheyBelong(program.ink)
            program.kill()

    def assertCaptionsStandWhereTheyBelong(self, ink):
        for y in (80, 120):
            label = ink(10, y - 8, 135, 40)
            self.assertInside(label, 20, y, 120, 25)
            self.assertGreaterEqual(label[2], 136, "right-aligned")
            self.assertLessEqual(abs((label[1] + label[3]) / 2 - (y + 12.5)), 4, "vertically centred")
        for x in (250, 350, 450):
            caption = ink(x + 22, 164, 56, 14)
            self.assertInside(caption, x + 22, 164, 56, 14)
            self.assertLessEqual(abs((caption[0] + caption[2]) / 2 - (x + 50)), 2, "centred")
            for corner in (x, x + 88):
                self.assertIsNone(ink(corner, 160, 12, 4), "a spike stands out from the outline")
        self.assertInside(ink(10, 20, 120, 25), 20, 20, 120, 25)
        self.assertInside(ink(152, 24, 330, 18), 152, 24, 330, 18)

    def test_choosing_a_surface_and_typing_its_settings(self):
        first_group, first_position = self.studio.settings()[0]
        self.program.click(*SURFACES)
        self.choose_second_surface("pop-up")
        self.program.set_number(GROUP, "7")
        self.program.key("Up", "Up", "Down")
        self.program.set_number(POSITION, "5")
        keep_picture("second-surface")
        self.program.click(*OK)
        self.assertEndsSilently(self.program)
        settings = self.studio.settings()
        self.assertEqual(settings[1], (8, 5))
        self.assertEqual(settings[0], (first_position, first_group), "stored crosswise when left")

    def test_a_number_out_of_range_is_refused_once_and_ok_does_not_act(self):
        stored = self.studio.settings()[0]
        self.program.set_number(GROUP, "999")
        self.program.click(*OK)
        self.program.await_alert()
        keep_picture("invalid-number")
        self.program.key("Return")
        self.program.await_no_alert()
        self.assertTrue(self.program.is_running(), "the press did not act")
        self.program.click(*OK)
        self.assertEndsSilently(self.program)
        self.assertEqual(self.studio.settings()[0][0], stored[0])

    def test_ok_on_a_locked_database_tells_so_once_and_can_be_tried_again(self):
        before = self.studio.settings()
        self.program.set_number(GROUP, "9")
        with self.studio.locked():
            self.program.click(*OK)
            self.program.await_alert()
            keep_picture("nothing-stored")
            self.program.key("Return")
            self.program.await_no_alert()
        self.assertEqual(self.studio.settings(), before)
        self.program.click(*OK)
        self.assertEndsSilently(self.program)
        self.assertEqual(self.studio.settings()[0], (9, before[0][1]))

    def test_cancel_and_closing_store_nothing(self):
        before = self.studio.settings()
        self.program.set_number(GROUP, "9")
        self.program.click(*CANCEL)
        self.assertEndsSilently(self.program)
        for end in (lambda program: program.key("alt+F4"), lambda program: program.key("Escape"),
                    Program.terminate):
            program = self.start()
            end(program)
            self.assertEndsSilently(program)
        self.assertEqual(self.studio.settings(), before)

    def test_help_opens_the_document_and_the_window_stays(self):
        self.program.click(*HELP)
        until("the help document is opened", self.studio.opened_documents)
        self.assertIn("SorvexMackieSurfaceHelp.htm", self.studio.opened_documents()[0])
        self.assertTrue(self.program.is_running())

    def test_the_keyboard_alone_suffices(self):
        self.program.key("Tab", "space")
        self.choose_second_surface("pop-up-by-keyboard")
        self.program.key("Tab", "ctrl+a")
        self.program.type("3")
        self.program.key("Tab", "ctrl+a")
        self.program.type("11")
        keep_picture("keyboard-focus")
        self.program.key("Return")
        self.assertTrue(self.program.is_running(), "Return ended the typing only")
        self.program.key("Return")
        self.assertEndsSilently(self.program)
        self.assertEqual(self.studio.settings()[1], (3, 11))


class NoSurfaces(Scene):
    with_surfaces = False

    def test_no_opens_nothing(self):
        self.program.await_alert()
        keep_picture("no-surfaces")
        self.program.key("Escape")
        self.program.await_window()
        self.program.click(*OK)
        self.assertEndsSilently(self.program)
        self.assertEqual(self.studio.opened_documents(), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
