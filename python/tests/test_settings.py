"""Settings from Python: CqvIniManager by name, and CControlIniManager with
a form written in Python (an object with the members the library calls).
Argument checks, stored encodings and tree views are tested in C++."""

import os
import tempfile
import unittest

import qvglobal


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
        ini.IniFile = self.file
        self.assertIs(ini.WriteString("Pfade", "Katalog", "/srv/qv"), True)
        self.assertEqual(ini.GetString("PFADE", "katalog"), "/srv/qv")
        self.assertEqual(self.read(), b"[Pfade]\r\nKatalog=/srv/qv\r\n")

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
