"""The global object, the module context and the host services driven from
Python: a Python main window, host application, form and ActiveBar stand in
for the host's objects, and SetDisplay / SetKeyboard replace the screen and
the keyboard."""

import contextlib
import os
import sqlite3
import tempfile
import unittest

import qvglobal

ERROR_1000 = -2147220504


def create(name):
    return qvglobal.CreateObject("qvglobal10." + name)


class HostApp:
    Path = "/opt/qv"

    def __init__(self):
        self.messages = []

    def SendQvModulMsg(self, xml, sender, folder, code, instance):
        self.messages.append((xml, sender, folder, code, instance))
        return True


class MainWindow:
    hWnd = 4711

    def __init__(self, toolbar=None):
        self.app = HostApp()
        self.toolbar = toolbar

    def GetApp(self):
        return self.app

    def GetMDIParentAB(self):
        return self.toolbar

    def CurHelpFile(self):
        return "/opt/qv/qv.chm"


class Collection:
    """A toolbar collection: Count and Item by 0-based position or name."""

    def __init__(self, items):
        self.items = items

    @property
    def Count(self):
        return len(self.items)

    def Item(self, key):
        if isinstance(key, int):
            return self.items[key]
        for item in self.items:
            if item.Name.lower() == key.lower():
                return item
        raise qvglobal.ComError(ERROR_1000, "ActiveBar", "Unbekannt: " + key)


class Tool:
    def __init__(self, name, width=20, caption="", picture=None):
        self.Name, self.Width, self.Caption = name, width, caption
        self.Enabled = True
        self.pictures = {0: picture}

    def GetPicture(self, slot):
        return self.pictures.get(slot)

    def SetPicture(self, slot, picture):
        self.pictures[slot] = picture


class Band:
    def __init__(self, name, tools, visible, docking, width=100, height=30):
        self.Name, self.Visible, self.DockingArea = name, visible, docking
        self.Width, self.Height = width, height
        self.left = self.top = -1
        self.Tools = Collection(tools)
        self.popups = 0

    def TrackPopup(self):
        self.popups += 1


class ActiveBar:
    def __init__(self, bands, tools):
        self.Bands = Collection(bands)
        self.Tools = Collection(tools)
        self.layouts = 0
        self.refreshed = 0
        self.keys = []

    def RecalcLayout(self):
        self.layouts += 1

    def Refresh(self):
        self.refreshed += 1

    def OnKeyDown(self, key: qvglobal.ByRef, shift):
        self.keys.append(("down", key.value, shift))

    def OnKeyUp(self, key, shift):
        self.keys.append(("up", key, shift))


class Form:
    def __init__(self, bar):
        self.bar = bar

    def GetActiveBar(self):
        return self.bar


class Screen:
    def __init__(self, width=1024, height=768, bits=24, mouse=(500, 400)):
        self.ScreenWidth, self.ScreenHeight = width, height
        self.BitsPerPixel, self.Planes = bits, 1
        self.mouse = mouse
        self.moves = []

    def GetCursorPos(self):
        return self.mouse

    def SetCursorPos(self, x, y):
        self.moves.append((x, y))


class Keys:
    def __init__(self, shift=False, ctrl=False, alt=False):
        self.IsShiftDown, self.IsCtrlDown, self.IsAltDown = shift, ctrl, alt


class SessionTest(unittest.TestCase):
    """A host session as python/README.md shows it."""

    def test_session(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        project = os.path.join(folder.name, "Haus.qv3")
        os.mkdir(project)
        # The container opens existing databases only: one with the version
        # table, as the suite's project creation makes it.
        with contextlib.closing(sqlite3.connect(
                os.path.join(project, "Haus_VM.qv3"))) as db:
            db.execute('CREATE TABLE qvversions ("Name" VARCHAR(255) '
                       'COLLATE NOCASE PRIMARY KEY, "Version" INTEGER)')

        qv = create("CQvGlobals")
        window = MainWindow()
        qv.frmMDIParentRef = window
        qv.QvLanguage = qv.StrToQvLanguage("de")

        prop = create("CQvModulProp")
        prop.Modul, prop.Modulname, prop.ProjektPfad = "VM", "Haus", project

        container = qv.QvDbContainer
        con = container.getQvProjectConnection(prop.FullModulPath)
        con.addTable("Raum", 1, ["Raum", 202, 20], ["Flaeche", 5], False)
        rooms = con.getTable("Raum")
        rooms.setValue("Raum", "R1")
        rooms.setValue("Flaeche", 12.5)
        rooms.insertRecord()
        qv.QvClipboard.qvrs = rooms
        self.assertEqual(qv.QvClipboard.qvrs.getTableName(), "raum")
        del rooms
        container.closeQvConnection(con)
        del con
        self.assertIsNone(qv.QvClipboard.qvrs)

        self.assertTrue(prop.SendQvModulMsg(1, None, "Keller"))
        self.assertEqual(window.app.messages, [
            (None, os.path.join(project, "Haus_VM.qv3"), project, "EZ",
             "Keller")])


class GlobalObjectTest(unittest.TestCase):
    def test_help_goes_to_the_handler_with_the_main_window(self):
        fn = create("CQVGlobalFunctions")
        globals_ = create("CQvGlobals")
        globals_.frmMDIParentRef = MainWindow()
        shown, boxes = [], []
        qvglobal.SetHelpHandler(lambda *topic: shown.append(topic))
        qvglobal.SetMessageBoxHandler(lambda *box: boxes.append(box) or 1)
        self.addCleanup(qvglobal.SetHelpHandler, None)
        self.addCleanup(qvglobal.SetMessageBoxHandler, None)
        with tempfile.NamedTemporaryFile(suffix=".chm") as help_file:
            fn.CallHelpFile(60012, 0, help_file.name)
            self.assertEqual(shown, [(help_file.name, 60012, 4711)])
        fn.CallHelpFile(60013)  # the main window's help file is missing
        self.assertEqual([b[1:] for b in boxes], [("qv-software", 16)])
        self.assertIn("/opt/qv/qv.chm", boxes[0][0])

        def broken(text, title, style):
            raise ValueError("no screen")

        qvglobal.SetMessageBoxHandler(broken)
        with self.assertRaises(qvglobal.ComError) as caught:
            fn.CallHelpFile(60013)
        self.assertEqual((caught.exception.number, str(caught.exception)),
                         (440, "ValueError: no screen"))
        qvglobal.SetMessageBoxHandler(lambda *box: "yes")
        with self.assertRaises(qvglobal.ComError) as caught:
            fn.CallHelpFile(60013)
        self.assertEqual((caught.exception.number, str(caught.exception)),
                         (13, "Type mismatch"))

    def test_key_events_carry_the_keyboard_shift_state(self):
        bar = ActiveBar([], [])
        globals_ = create("CQvGlobals")
        globals_.frmMDIParentRef = MainWindow(bar)
        self.addCleanup(qvglobal.SetKeyboard, None)
        # One key each: every member of the Python keyboard is read.
        for keys, code in ((Keys(shift=True), 65), (Keys(ctrl=True), 67),
                           (Keys(alt=True), 8)):
            qvglobal.SetKeyboard(keys)
            globals_.ABOnKeyDown(code, 0)
        qvglobal.SetKeyboard(None)
        globals_.ABOnKeyUp(13, 0)
        self.assertEqual(bar.keys, [("down", 65, 1), ("down", 67, 2),
                                    ("down", 8, 4), ("up", 13, 0)])


class ActiveBarTest(unittest.TestCase):
    def setUp(self):
        self.screen = Screen()
        qvglobal.SetDisplay(self.screen)
        self.addCleanup(qvglobal.SetDisplay, None)
        self.prop = create("CQvModulProp")

    def show(self, band, mouse):
        self.screen.mouse = mouse
        self.screen.moves = []
        bar = ActiveBar([band], [])
        self.prop.frmMDIChild = Form(bar)
        self.prop.ActivebarShowToolBar(band.Name)
        return bar

    def test_docked_visible_band_is_left_alone(self):
        for area in (1, 2, 4, 8):
            band = Band("bdMain", [Tool("t", 50)], True, area)
            bar = self.show(band, (500, 400))
            self.assertEqual((band.left, band.Width, bar.layouts), (-1, 100, 0))
            self.assertEqual(self.screen.moves, [])

    def test_bands_float_centred_on_the_mouse_and_stay_on_screen(self):
        # (visible, docking, mouse) -> (left, top, width, mouse moved to)
        rows = [
            ((False, 1, (500, 400)), (475, 385, 50, []), "hidden, middle"),
            ((False, 16, (1020, 760)), (974, 738, 50, [(999, 753)]),
             "hidden, bottom right"),
            ((False, 2, (3, 5)), (0, 0, 50, [(25, 15)]), "hidden, top left"),
            ((True, 16, (1000, 10)), (924, 0, 100, [(974, 15)]),
             "floating, top right"),
            ((True, 0, (-40, 900)), (0, 738, 100, [(50, 753)]),
             "floating off screen"),
        ]
        for (visible, docking, mouse), (left, top, width, moves), what in rows:
            with self.subTest(what):
                band = Band("bdPopup", [Tool("a", 30), Tool("b", 50)],
                            visible, docking)
                bar = self.show(band, mouse)
                self.assertEqual((band.left, band.top, band.Width),
                                 (left, top, width))
                self.assertEqual((band.Visible, band.DockingArea), (True, 16))
                self.assertEqual(bar.layouts, 2)
                self.assertEqual(self.screen.moves, moves)

    def test_tools_and_popups_by_name(self):
        cut = Tool("tCut")
        band = Band("bdQVPopup", [cut], True, 1)
        bar = ActiveBar([band], [cut])
        self.prop.frmMDIChild = Form(bar)
        self.prop.SetABToolEnabled("TCUT", False)
        self.assertIs(cut.Enabled, False)
        self.assertIs(self.prop.GetABToolEnabled("tCut"), False)
        self.prop.ActivebarTrackPopup("bdQVPopup")
        self.assertEqual(band.popups, 1)

    def test_copy_picture_reaches_every_tool_of_that_name(self):
        source = Tool("tSave", caption="Speichern", picture="disk")
        in_band = Tool("TSAVE2")
        in_other = Tool("tSave2", caption="alt", picture="old")
        own = Tool("tsave2")
        other = Tool("tOther", caption="bleibt")
        bar = ActiveBar([Band("b1", [in_band, other], True, 1),
                         Band("b2", [in_other], False, 16)],
                        [own, source, other])
        self.prop.frmMDIChild = Form(bar)
        self.prop.ABCopyPicture("TSAVE", "tSave2")
        for tool in (in_band, in_other, own):
            self.assertEqual((tool.Caption, tool.GetPicture(0)),
                             ("Speichern", "disk"))
        self.assertEqual((other.Caption, other.GetPicture(0)), ("bleibt", None))
        self.assertEqual(bar.refreshed, 1)


if __name__ == "__main__":
    unittest.main()
