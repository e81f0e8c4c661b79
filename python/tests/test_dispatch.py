"""Library objects reached by member name: creation, properties and
methods, collections and dictionaries, by-reference arguments and errors."""

import unittest

import qvglobal


class MemberAccessTest(unittest.TestCase):
    def setUp(self):
        self.d = qvglobal.CreateObject("Scripting.Dictionary")

    def test_names_ignore_letter_case_and_dir_keeps_interface_order(self):
        self.d.ADD("a", 1)
        self.assertEqual(self.d.count, 1)
        self.assertEqual(self.d.ITEM("a"), 1)
        members = ["Add", "Count", "Exists", "Items", "Item", "Keys",
                   "Remove", "RemoveAll", "CompareMode"]
        self.assertEqual(self.d.__dir__(), members)
        self.assertEqual(dir(self.d), sorted(members))

    def test_method_read_without_call_is_bound(self):
        add = self.d.Add
        self.assertIsInstance(add, qvglobal.Member)
        add("k", "v")
        self.assertEqual(self.d.Item("k"), "v")

    def test_property_with_arguments(self):
        self.d.Item["k"] = 5  # let with an argument
        self.assertEqual(self.d.Item("k"), 5)
        self.assertEqual(self.d.Item["k"], 5)
        self.d["k"] = "six"
        self.assertEqual(self.d["k"], "six")

    def test_let_and_set(self):
        c = qvglobal.CreateObject("VBA.Collection")
        self.d.Item["obj"] = c  # an object: set
        self.assertEqual(self.d.Item("obj"), c)
        self.d.Item["obj"] = None  # Nothing is an object too
        self.assertIsNone(self.d.Item("obj"))
        fresh = qvglobal.CreateObject("Scripting.Dictionary")
        fresh.CompareMode = 1
        self.assertEqual(fresh.CompareMode, 1)


class CollectionProtocolTest(unittest.TestCase):
    def test_collection(self):
        c = qvglobal.CreateObject("VBA.Collection")
        c.Add("first")
        c.Add("second", "k2")
        self.assertEqual(len(c), 2)
        self.assertEqual(list(c), ["first", "second"])
        self.assertEqual(c[1], "first")
        self.assertEqual(c["K2"], "second")
        self.assertIn("second", c)
        self.assertNotIn("third", c)
        self.assertTrue(qvglobal.CreateObject("VBA.Collection"))

    def test_dictionary(self):
        d = qvglobal.CreateObject("Scripting.Dictionary")
        d.Add(2, "two")
        d.Add("2", "text two")
        self.assertEqual(len(d), 2)
        self.assertEqual(list(d), [2, "2"])
        self.assertIn(2, d)
        self.assertNotIn(3, d)
        self.assertEqual({k: d[k] for k in d}, {2: "two", "2": "text two"})

    def test_objects_without_count(self):
        bar = qvglobal.CreateObject("qvglobal10.CQVActiveBar")
        with self.assertRaises(TypeError):
            len(bar)
        with self.assertRaises(TypeError):
            iter(bar)
        self.assertTrue(bar)


class ByRefTest(unittest.TestCase):
    def test_by_ref_integer_parameter(self):
        bar = qvglobal.CreateObject("qvglobal10.CQVActiveBar")
        code = qvglobal.ByRef(37)
        self.assertEqual(bar.ABKeyCodeToSendKeyStr(code), "{F11}")
        self.assertEqual(code.value, 37)
        self.assertEqual(repr(code), "ByRef(37)")
        with self.assertRaises(qvglobal.ComError) as cm:
            bar.ABKeyCodeToSendKeyStr(qvglobal.ByRef(40000))
        self.assertEqual((cm.exception.number, str(cm.exception)), (6, "Overflow"))
        self.assertIs(qvglobal.ByRef().value, qvglobal.Empty)


class ErrorTest(unittest.TestCase):
    def assertComError(self, cm, number, source, description):
        e = cm.exception
        self.assertEqual((e.number, e.source, e.description),
                         (number, source, description))
        self.assertEqual(str(e), description)

    def test_unknown_member(self):
        d = qvglobal.CreateObject("Scripting.Dictionary")
        for action in (lambda: d.NoSuchMember,
                       lambda: setattr(d, "NoSuchMember", 1)):
            with self.assertRaises(qvglobal.ComError) as cm:
                action()
            self.assertComError(cm, 438, "",
                                "Object doesn't support this property or method")
            self.assertIsInstance(cm.exception, AttributeError)
        self.assertFalse(hasattr(d, "NoSuchMember"))
        self.assertEqual(getattr(d, "NoSuchMember", "default"), "default")
        self.assertTrue(hasattr(d, "exists"))

    def test_errors_keep_number_source_and_text(self):
        bar = qvglobal.CreateObject("qvglobal10.CQVActiveBar")
        with self.assertRaises(qvglobal.ComError) as cm:
            bar.ABKeyCodeToSendKeyStr(9999)
        self.assertComError(
            cm, -2147220504, "",
            "CQVActiveBar->ABKeyCodeToSendKeyStr: Nicht zuweisbarer KeyCode "
            "9999")


if __name__ == "__main__":
    unittest.main()
