"""Settings from Python: CqvIniManager by name, and CControlIniManager with
a form and a tree view written in Python (objects with the members the
library calls)."""

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


class Node:
    def __init__(self, tree, index, parent, text):
        self.tree, self.Index, self.Parent, self.text = tree, index, parent, text
        self.Expanded = False

    def _siblings(self):
        return [n for n in self.tree.nodes if n.Parent is self.Parent]

    @property
    def Child(self):
        children = [n for n in self.tree.nodes if n.Parent is self]
        return children[0] if children else None

    @property
    def Next(self):
        siblings = self._siblings()
        i = siblings.index(self)
        return siblings[i + 1] if i + 1 < len(siblings) else None

    @property
    def FirstSibling(self):
        return self._siblings()[0]

    @property
    def Root(self):
        node = self
        while node.Parent is not None:
            node = node.Parent
        return node

    @property
    def FullPath(self):
        if self.Parent is None:
            return self.text
        return self.Parent.FullPath + self.tree.PathSeparator + self.text


class Nodes:
    def __init__(self, tree):
        self.tree = tree

    @property
    def Count(self):
        return len(self.tree.nodes)

    def Item(self, index):
        return self.tree.nodes[index - 1]


class TreeView:
    """Heizung > Kessel, Heizung > Pumpe > Motor, Lüftung."""

    def __init__(self):
        self.Name = "tvwAnlage"
        self.PathSeparator = "/"
        self.nodes = []
        self.Nodes = Nodes(self)
        self.SelectedItem = None
        heizung = self.add(None, "Heizung")
        self.add(heizung, "Kessel")
        pumpe = self.add(heizung, "Pumpe")
        self.add(pumpe, "Motor")
        self.add(None, "Lüftung")

    def add(self, parent, text):
        node = Node(self, len(self.nodes) + 1, parent, text)
        self.nodes.append(node)
        return node


class SettingsTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.file = os.path.join(self.folder.name, "py.ini")
        self.manager = qvglobal.CreateObject("qvglobal10.CControlIniManager")
        self.manager.IniFile = self.file

    def tearDown(self):
        self.folder.cleanup()

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

    def test_tree_view_saved_and_restored(self):
        tree = TreeView()
        for i in (1, 3):
            tree.nodes[i - 1].Expanded = True
        tree.SelectedItem = tree.nodes[3]
        self.assertTrue(self.manager.SaveTreeView(tree, "Baum"))
        self.assertEqual(self.read().decode("utf-8"),
                         "[Baum]\r\nRootNodes=1,1;5,0\r\n1Node=2,0;3,1\r\n"
                         "3Node=4,0\r\nSelectedItem=Heizung/Pumpe/Motor\r\n")
        fresh = TreeView()
        self.assertIs(self.manager.LoadTreeView(fresh, "Baum"), True)
        self.assertEqual([n.Index for n in fresh.nodes if n.Expanded], [1, 3])
        self.assertIs(fresh.SelectedItem, fresh.nodes[3])
        self.assertIs(self.manager.LoadTreeView(fresh, "Leer"), False)


if __name__ == "__main__":
    unittest.main()
