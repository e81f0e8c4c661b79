"""Python objects handed to the library and called by it by member name,
through the bridge's test probe "PyBridge.Probe" (registered by the test
module qvglobal_probe), whose CallHost invokes a member of a host object the
way the library calls a grid or a form."""

import gc
import unittest
import weakref

import qvglobal
import qvglobal_probe  # noqa: F401  registers "PyBridge.Probe"

METHOD, GET, LET, SET = 1, 2, 4, 8


class Form:
    def __init__(self):
        self.Caption = "Raumbuch"
        self.Owner = None
        self.calls = []

    def AddRow(self, key, text):
        self.calls.append((key, text))
        return len(self.calls)

    def Measure(self, width: qvglobal.ByRef, height: "ByRef"):
        width.value = width.value * 2
        height.value = "tall"
        return True

    def Fill(self, values):
        values[0] = "filled"

    def Fail(self):
        raise ValueError("no rows")

    def FailAsCom(self):
        raise qvglobal.ComError(-2147220504, "Form", "Formular fehlt")


class HostObjectTest(unittest.TestCase):
    def setUp(self):
        self.probe = qvglobal.CreateObject("PyBridge.Probe")
        self.form = Form()

    def call(self, name, kind, *args):
        box = qvglobal.ByRef(list(args))
        result = self.probe.CallHost(self.form, name, kind, box)
        return result, list(box.value)

    def test_method_with_arguments(self):
        self.assertEqual(self.call("AddRow", METHOD, "R1", "Bad"), (1, ["R1", "Bad"]))
        self.assertEqual(self.call("addrow", METHOD, 2, None), (2, [2, None]))
        self.assertEqual(self.form.calls, [("R1", "Bad"), (2, None)])

    def test_get_let_and_set(self):
        self.assertEqual(self.call("caption", GET), ("Raumbuch", []))
        self.call("CAPTION", LET, "Heizlast")
        self.assertEqual(self.form.Caption, "Heizlast")
        # None is Nothing both ways; a Python object set comes back as itself.
        self.assertIs(self.call("Owner", GET)[0], None)
        owner = qvglobal.CreateObject("VBA.Collection")
        self.call("Owner", SET, owner)
        self.assertEqual(self.form.Owner, owner)
        parent = Form()
        self.call("Owner", SET, parent)
        self.assertIs(self.form.Owner, parent)
        # A get of a method calls it, as automation hosts do.
        self.assertEqual(self.call("AddRow", GET, "R2", "")[0], 1)

    def test_by_reference_arguments_and_arrays_changed_in_place(self):
        result, args = self.call("Measure", METHOD, 21, 0)
        self.assertEqual((result, args), (True, [42, "tall"]))
        _, args = self.call("Fill", METHOD, ["a", "b"])
        self.assertEqual(args, [["filled", "b"]])

    def test_missing_member_and_extra_arguments_raise_in_the_library(self):
        missing = (438, "Object doesn't support this property or method")
        extra = (450, "Wrong number of arguments or invalid property "
                      "assignment")
        for name, kind, error in (("NoSuchMember", METHOD, missing),
                                  ("NoSuchMember", GET, missing),
                                  ("NoSuchMember", LET, missing),
                                  ("Caption", GET, extra)):
            with self.subTest(name=name, kind=kind):
                with self.assertRaises(qvglobal.ComError) as cm:
                    self.call(name, kind, 1)
                self.assertEqual(
                    (cm.exception.number, cm.exception.description), error)

    def test_errors_of_the_host_reach_the_caller(self):
        # A Python exception becomes error 440 caused by it; a ComError
        # keeps its number, source and text.
        for name, parts in (
                ("Fail", (440, "Python", "ValueError: no rows")),
                ("FailAsCom", (-2147220504, "Form", "Formular fehlt"))):
            with self.subTest(name=name):
                with self.assertRaises(qvglobal.ComError) as cm:
                    self.call(name, METHOD)
                e = cm.exception
                self.assertEqual((e.number, e.source, e.description), parts)
                if name == "Fail":
                    self.assertIsInstance(e.__cause__, ValueError)

    def test_plain_callables_and_modules_are_hosts(self):
        import math

        box = qvglobal.ByRef([16.0])
        self.assertEqual(self.probe.CallHost(math, "SQRT", METHOD, box), 4.0)


class LifetimeTest(unittest.TestCase):
    def test_library_keeps_the_python_object_alive(self):
        d = qvglobal.CreateObject("Scripting.Dictionary")
        form = Form()
        alive = weakref.ref(form)
        d.Add("form", form)
        del form
        gc.collect()
        self.assertIsNotNone(alive())
        self.assertIs(d.Item("form"), alive())
        d.RemoveAll()
        gc.collect()
        self.assertIsNone(alive())

    def test_one_python_object_is_one_library_object(self):
        d = qvglobal.CreateObject("Scripting.Dictionary")
        form = Form()
        d.Add(form, "as key")
        self.assertTrue(d.Exists(form))
        self.assertFalse(d.Exists(Form()))
        self.assertEqual(d.Item(form), "as key")

    def test_library_object_outlives_its_wrapper(self):
        outer = qvglobal.CreateObject("VBA.Collection")
        inner = qvglobal.CreateObject("Scripting.Dictionary")
        inner.Add("k", Form())
        outer.Add(inner)
        del inner
        gc.collect()
        self.assertEqual(outer.Item(1).Item("k").Caption, "Raumbuch")


if __name__ == "__main__":
    unittest.main()
