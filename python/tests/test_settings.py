"""Settings from Python: CqvIniManager by name, and CControlIniManager with
a form written in Python (an object with the members the library calls).
Tree views and the stored lists' errors are tested in C++."""

import os
import tempfile
import unittest

import qvglobal

ERROR_1000 = -2147220504


class Form:
    def __init__(self, name="frmPy"):
        self.Name = name
        self.left, self.top, self.Width, self.Height = 10, 20, 300, 200

    def Move(self, left, top, width, height):
        self.left, self.top, self.Width, self.Height = left, top, width, height


class SettingsTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.file = os.path.join(self.folder.name, "py.ini")
        self.manager = qvglobal.CreateObject("qvglobal10.CControlIniManager")
        self.manager.IniFile = self.file

    def read(self):
        with open(self.file, "rb") as f:
            return f.read()

    def test_ini_manager_by_name(self):
        ini = qvglobal.CreateObject("qvglobal10.CqvIniManager")
        with self.assertRaises(qvglobal.ComError) as cm:
            ini.GetString("S", "k")
        self.assertEqual((cm.exception.number, cm.exception.description),
                         (ERROR_1000, "qvIniManager.dll: Ini-File noch nicht angegeben"))
        ini.IniFile = self.file
        self.assertTrue(ini.WriteString("Pfade", "Katalog", "/srv/qv"))
        self.assertTrue(ini.WriteBoolean("Pfade", "Lokal", True))
        self.assertEqual(ini.GetString("PFADE", "katalog"), "/srv/qv")
        self.assertEqual(ini.GetLong("Pfade", "Lokal"), -1)
        self.assertEqual(ini.GetLong("Pfade", "Fehlt", 7), 7)
        self.assertEqual(self.read(), b"[Pfade]\r\nKatalog=/srv/qv\r\nLokal=-1\r\n")

    def test_form_saved_restored_and_centred(self):
        form = Form()
        self.assertTrue(self.manager.LoadForm(form))
        self.assertEqual((form.left, form.top), ((1920 - 300) // 2, (1080 - 200) // 2))
        form.Move(5, 6, 700, 500)
        section = qvglobal.ByRef("")
        self.assertTrue(self.manager.SaveForm(form, section))
        self.assertEqual(section.value, "frmPy")
        reopened = Form()
        self.assertTrue(self.manager.LoadForm(reopened))
        self.assertEqual((reopened.left, reopened.top, reopened.Width, reopened.Height),
                         (5, 6, 700, 500))


if __name__ == "__main__":
    unittest.main()
