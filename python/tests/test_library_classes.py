"""A short script over the library's classes, as an engineer would write
it: toolbar key strings, the used-keys register, module queries and a
project connection. Classes that are not registered are skipped."""

import contextlib
import os
import sqlite3
import tempfile
import unittest

import qvglobal

REGISTERED = set(qvglobal.RegisteredClasses())


def registered(*names):
    missing = [n for n in names if "qvglobal10." + n not in REGISTERED]
    return unittest.skipIf(missing, "not registered: " + ", ".join(missing))


def create(name):
    return qvglobal.CreateObject("qvglobal10." + name)


class RegistryTest(unittest.TestCase):
    def test_every_registered_class_is_creatable(self):
        self.assertIn("Scripting.Dictionary", REGISTERED)
        self.assertIn("VBA.Collection", REGISTERED)
        for progid in sorted(REGISTERED):
            with self.subTest(progid=progid):
                obj = qvglobal.CreateObject(progid)
                self.assertIsInstance(obj, qvglobal.Dispatch)
                names = obj.__dir__()
                self.assertEqual(len(names), len({n.lower() for n in names}))


@registered("CQVActiveBar")
class ToolbarTest(unittest.TestCase):
    def test_key_strings_and_tool_names(self):
        bar = create("CQVActiveBar")
        self.assertEqual(bar.ABKeyCodeToSendKeyStr(37), "{F11}")
        self.assertEqual(bar.ABKeyCodeToSendKeyStr(0), "")
        self.assertEqual(bar.MNU_EXPORT_TOOLNAME, "tExport")
        names = bar.ARRAY_TOOLNAMES
        self.assertIsInstance(names, qvglobal.SafeArray)
        self.assertEqual((names.lbound, names.ubound), (0, 11))
        self.assertTrue(all(bar.IsToolInArrayToolnames(n) for n in names))
        self.assertFalse(bar.IsToolInArrayToolnames(names[0].upper()))


@registered("CQvUsedKeys_t_")
class UsedKeysTest(unittest.TestCase):
    def test_register(self):
        keys = create("CQvUsedKeys_t_")
        keys.add(4, "Raum", "R1")
        self.assertIs(keys.isIn(4, "RAUM", "r1"), True)
        self.assertIs(keys.isIn(5, "raum", "r1"), False)


@registered("CQvModulDefs", "CQvModulDef")
class ModuleQueriesTest(unittest.TestCase):
    def setUp(self):
        self.defs = create("CQvModulDefs")

    def test_queries(self):
        self.assertEqual(self.defs.StrToModul("vm"), 18)
        self.assertEqual(self.defs.GetModulDescription("NO"), "Wärmebedarf")
        self.assertEqual(self.defs.GetCatalogs("ce"), ["CE", "GL", "TRY"])
        extensions = self.defs.GetAllModulExtensions()
        self.assertEqual(len(extensions), 16)
        self.assertEqual(list(extensions)[:3], ["DX", "JS", "GL"])

    def test_records_are_the_tables_own_objects(self):
        table = self.defs.GetArrayQvModulDefs()
        self.assertEqual((table.lbound, table.ubound), (0, 15))
        vm = self.defs.GetQvModulDef("vm")
        self.assertEqual(vm.m_sExtension, "VM")
        self.assertEqual(vm.m_eModul, 18)
        self.assertIn(vm, list(table))

    def test_unknown_module(self):
        with self.assertRaises(qvglobal.ComError) as cm:
            self.defs.GetQvModulDef("XY")
        e = cm.exception
        self.assertEqual((e.number, e.source), (-2147220504, ""))
        self.assertEqual(
            str(e), "CQvModulDefs->GetProjectModul: Finde zu 'XY' kein Struktur")


def new_database(folder):
    """The container opens existing databases only; make one as the
    suite's project creation does, with the version table."""
    path = os.path.join(folder, "Projekt_VM.qv3")
    with contextlib.closing(sqlite3.connect(path)) as db:
        db.execute('CREATE TABLE qvversions ("Name" VARCHAR(255) '
                   'COLLATE NOCASE PRIMARY KEY, "Version" INTEGER)')
        db.commit()
    return path


def stored_rows(path, table):
    with contextlib.closing(sqlite3.connect(path)) as db:
        return db.execute(f'SELECT count(*) FROM "{table}"').fetchone()[0]


# The engine adapter's "transaction used out of order" error.
TRANSACTION_ERROR = -2147221504 + 0x2000 + 8


@registered("CQvDbContainer", "CQvConnection")
class ConnectionTest(unittest.TestCase):
    def test_one_connection_per_database(self):
        with tempfile.TemporaryDirectory() as folder:
            path = new_database(folder)
            container = create("CQvDbContainer")
            con = container.getQvProjectConnection(path)
            again = container.getQvProjectConnection(" " + path.upper() + " ")
            self.assertEqual(con, again)
            self.assertEqual(con.getConnectionVersion(), 0)
            con.setConnectionVersion(3)
            self.assertEqual(con.getConnectionVersion(), 3)
            container.closeQvConnection(con)
            container.closeQvConnection(again)
            with self.assertRaises(qvglobal.ComError) as cm:
                container.closeQvConnection(con)
            self.assertEqual(cm.exception.number, 3)

    def test_transactions_on_the_connection_object(self):
        with tempfile.TemporaryDirectory() as folder:
            path = new_database(folder)
            container = create("CQvDbContainer")
            con = container.getQvProjectConnection(path)
            con.addTable("Wand", 1, ["Nr", 3], ["Text", 203], False)
            walls = con.getTable("wand")
            db = con.m_conConnection

            def add(number):
                walls.clearVars()
                walls.setValue("Nr", number)
                walls.setValue("Text", "Wand %d" % number)
                walls.insertRecord()

            self.assertEqual(db.BeginTrans(), 1)
            add(1)
            self.assertEqual(db.BeginTrans(), 2)
            add(2)
            db.RollbackTrans()
            self.assertEqual(walls.getRecordCount(), 1)
            self.assertEqual(stored_rows(path, "wand"), 0)  # not committed
            db.CommitTrans()
            self.assertEqual(stored_rows(path, "wand"), 1)
            with self.assertRaises(qvglobal.ComError) as cm:
                db.CommitTrans()
            self.assertEqual(cm.exception.number, TRANSACTION_ERROR)
            self.assertEqual(cm.exception.description, "no transaction is open")

            db.BeginTrans()
            add(3)
            container.closeQvConnection(con)  # the open transaction goes
            self.assertEqual(stored_rows(path, "wand"), 1)


if __name__ == "__main__":
    unittest.main()
