"""Messages from Python: message text conversion with a Python list of
values, and an error list shown in a grid written in Python, its events and
its help requests. Conversion cases and the list's rules are tested in C++."""

import tempfile
import unittest

import qvglobal


def create(name):
    return qvglobal.CreateObject("qvglobal10." + name)


def message(num, kind, text, *fields):
    msg = create("CQvErrMsg")
    msg.m_eModul = 1
    msg.m_lNum = num
    msg.m_eKind = kind
    msg.m_sMsg = text
    for i, value in enumerate(fields):
        msg.addField("f%d" % i, value)
    return msg


class Grid:
    """A tree grid as the error list drives it."""

    def __init__(self):
        self.sink = None
        self.rows = []
        self.current = 0

    def advise(self, sink):
        self.sink = sink

    def unadvise(self, sink):
        self.sink = None

    def SetNumberRows(self, count):
        self.rows = [[None, None] for _ in range(count)]

    def QuickSetQvResSrcBitmap(self, col, row, bitmap):
        self.rows[row][col] = bitmap

    def QuickSetText(self, col, row, text):
        self.rows[row][col] = text

    def QvFitRowsHeightNormalMultiLine(self):
        pass

    def GetCurrentRow(self):
        return self.current


class Listener:
    def __init__(self):
        self.events = []

    def QvErrSelect(self, errMsg):
        self.events.append(("select", errMsg.m_lNum))

    def QvErrHighlight(self, errMsg):
        self.events.append(("highlight", errMsg.m_lNum))


class ErrListTest(unittest.TestCase):
    def test_rows_and_events(self):
        errors = create("CQvErrList")
        listener = Listener()
        errors.advise(listener)
        errors.addError(message(12, 1, "Raum R12: U-Wert zu hoch", "R12"))
        errors.addError(message(30, 3, "Raum R14: keine Fenster", "R14"))
        grid = Grid()
        errors.QvTGrErr = grid
        self.assertEqual(grid.rows, [[203, "Raum R12: U-Wert zu hoch"],
                                     [204, "Raum R14: keine Fenster"]])
        grid.sink.OnDClicked(1, 1)
        grid.sink.OnRowChange(1, 0)
        self.assertEqual(listener.events, [("select", 30), ("highlight", 12)])
        errors.QvTGrErr = None
        self.assertIsNone(grid.sink)


class ConvertMsgTest(unittest.TestCase):
    def test_values_from_a_list_and_units_of_a_properties_object(self):
        functions = create("CQVGlobalFunctions")
        self.assertEqual(
            functions.ConvertMsg("Raum @@1,r@@:@@n@@@@2,n@@ Fenster",
                                 ["R12", 3]),
            "Raum R12:\r\n3 Fenster")
        props = qvglobal.CreateObject("QvCentral10.QvProperties")
        props.Property = "023/Massenstrom"
        self.assertEqual(functions.GetPrintUnitText(0, props), "kg/h")


class MainWindow:
    """The host's main window as the global object asks it."""

    def __init__(self, help_file):
        self.CurHelpFile = help_file
        self.hWnd = 4711


class HelpTest(unittest.TestCase):
    """Help file and window come from the global object."""

    def test_help_for_a_message_of_the_grid(self):
        requests = []
        qvglobal.SetHelpHandler(lambda *request: requests.append(request))
        self.addCleanup(qvglobal.SetHelpHandler, None)
        errors = create("CQvErrList")
        errors.addError(message(12, 1, "zwölf"))
        grid = Grid()
        errors.QvTGrErr = grid
        handled = qvglobal.ByRef(False)
        with tempfile.NamedTemporaryFile(suffix=".chm") as help_file:
            globals_ = create("CQvGlobals")
            globals_.frmMDIParentRef = MainWindow(help_file.name)
            grid.sink.OnHelp(0, 1, handled)
        self.assertIs(handled.value, True)
        self.assertEqual(requests, [(help_file.name, 60012, 4711)])


if __name__ == "__main__":
    unittest.main()
