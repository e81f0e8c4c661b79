"""Values crossing the bridge: every kind stored in a Scripting.Dictionary
and read back, the conversions that depend on the parameter type, and the
qvglobal.SafeArray sequence."""

import datetime
import unittest

import qvglobal


def store_and_read(value):
    d = qvglobal.CreateObject("Scripting.Dictionary")
    d.Add("k", value)
    return d.Item("k")


class RoundTripTest(unittest.TestCase):
    def assertRoundTrip(self, value, expected_type=None):
        back = store_and_read(value)
        self.assertEqual(back, value)
        self.assertIs(type(back), expected_type or type(value))
        return back

    def test_scalars(self):
        for value in (True, False, 0, -2147483648, 2147483647, 1.5, -1e300,
                      "", "Wärmebedarf – Raum 1 ✓"):
            with self.subTest(value=value):
                self.assertRoundTrip(value)

    def test_special_values_and_none_is_nothing_not_empty(self):
        self.assertIs(store_and_read(None), None)
        self.assertIs(store_and_read(qvglobal.Empty), qvglobal.Empty)
        self.assertIs(store_and_read(qvglobal.Null), qvglobal.Null)
        self.assertEqual(repr(qvglobal.Empty), "qvglobal.Empty")
        self.assertEqual(repr(qvglobal.Null), "qvglobal.Null")
        self.assertFalse(qvglobal.Empty)
        self.assertFalse(qvglobal.Null)

    def test_dates(self):
        for value in (
            datetime.datetime(2024, 3, 1, 12, 30, 15),
            datetime.datetime(1899, 12, 30),
            datetime.datetime(1899, 12, 29, 6, 0),  # before day 0
            datetime.datetime(9999, 12, 31, 23, 59, 59, 999000),
        ):
            with self.subTest(value=value):
                self.assertRoundTrip(value)
        # A date is taken as midnight; times keep only their milliseconds.
        for value, expected in (
            (datetime.date(2024, 3, 1), datetime.datetime(2024, 3, 1)),
            (datetime.datetime(2024, 3, 1, 8, 0, 0, 123456),
             datetime.datetime(2024, 3, 1, 8, 0, 0, 123000)),
            # Rounding up would leave the range of dates: the last
            # millisecond of 9999 stays.
            (datetime.datetime(9999, 12, 31, 23, 59, 59, 999999),
             datetime.datetime(9999, 12, 31, 23, 59, 59, 999000)),
            (datetime.datetime(2024, 2, 28, 23, 59, 59, 999999),
             datetime.datetime(2024, 2, 29)),
        ):
            with self.subTest(value=value):
                self.assertEqual(store_and_read(value), expected)

    def test_arrays(self):
        back = store_and_read([1, "a", None, [2.5, True]])
        self.assertIsInstance(back, qvglobal.SafeArray)
        self.assertEqual((back.lbound, back.ubound), (0, 3))
        self.assertEqual(back[:3], [1, "a", None])
        self.assertIsInstance(back[3], qvglobal.SafeArray)
        self.assertEqual(back[3], [2.5, True])
        self.assertEqual(store_and_read(()), [])
        self.assertEqual(store_and_read(()).ubound, -1)

    def test_arrays_keep_their_bounds(self):
        back = store_and_read(qvglobal.SafeArray(["x", "y"], 1))
        self.assertEqual((back.lbound, back.ubound), (1, 2))
        self.assertEqual(list(back), ["x", "y"])
        self.assertEqual(back, qvglobal.SafeArray(("x", "y"), lbound=1))
        self.assertNotEqual(back, ["x", "y"])  # a list has lower bound 0
        self.assertNotEqual(back, qvglobal.SafeArray(["x", "y"], 0))

    def test_objects_come_back_as_themselves_or_equal(self):
        class Form:
            pass

        form = Form()
        self.assertIs(store_and_read(form), form)
        c = qvglobal.CreateObject("VBA.Collection")
        back = store_and_read(c)
        self.assertIsInstance(back, qvglobal.Dispatch)
        self.assertEqual(back, c)
        self.assertEqual(hash(back), hash(c))
        self.assertNotEqual(back, qvglobal.CreateObject("VBA.Collection"))

    def test_objects_with_an_index_convert_as_ints(self):
        class KeyCode:
            def __index__(self):
                return 37

        bar = qvglobal.CreateObject("qvglobal10.CQVActiveBar")
        self.assertEqual(bar.ABKeyCodeToSendKeyStr(KeyCode()), "{F11}")
        self.assertEqual(store_and_read(KeyCode()), 37)


class RefusedValuesTest(unittest.TestCase):
    """What the bridge cannot pass on raises ComError with the automation
    number, and nothing reaches the object."""

    def assertComError(self, call, number, description):
        with self.assertRaises(qvglobal.ComError) as cm:
            call()
        self.assertEqual((cm.exception.number, cm.exception.description),
                         (number, description))

    def test_refused_calls(self):
        d = qvglobal.CreateObject("Scripting.Dictionary")
        bar = qvglobal.CreateObject("qvglobal10.CQVActiveBar")
        no_utf8 = ("Invalid procedure call or argument: the string holds an "
                   "unpaired surrogate and has no UTF-8 form")
        cases = (
            (lambda: d.Add(Key="k", Item=1), 5,
             "Invalid procedure call or argument: keyword argument 'Key' "
             "(members take positional arguments only)"),
            (lambda: d.Add("k", "Raum \udc80"), 5, no_utf8),
            (lambda: d.Add("\ud800", 1), 5, no_utf8),
            (lambda: d.Add("k", ["ok", "\udfff"]), 5, no_utf8),
            (lambda: qvglobal.CreateObject(5), 13,
             "Type mismatch: the ProgID must be a string"),
            # Python ints wider than the parameter: Long, or Integer
            (lambda: d.Add("k", 2**31), 6, "Overflow"),
            (lambda: d.Add("k", -(2**31) - 1), 6, "Overflow"),
            (lambda: d.Add("k", 2**100), 6, "Overflow"),
            (lambda: bar.ABKeyCodeToSendKeyStr(32768), 6, "Overflow"),
            (lambda: bar.ABKeyCodeToSendKeyStr(-32769), 6, "Overflow"),
        )
        for call, number, description in cases:
            with self.subTest(description=description):
                self.assertComError(call, number, description)
        self.assertEqual(len(d), 0)


class SafeArrayTest(unittest.TestCase):
    def test_sequence(self):
        a = qvglobal.SafeArray([10, 20, 30], 5)
        self.assertEqual(len(a), 3)
        self.assertEqual((a[0], a[-1]), (10, 30))
        self.assertEqual(a[1:], [20, 30])
        a[1] = "x"
        self.assertEqual(list(a), [10, "x", 30])
        with self.assertRaises(IndexError):
            a[3]
        self.assertEqual(repr(a), "SafeArray([10, 'x', 30], lbound=5)")
        self.assertEqual(qvglobal.SafeArray().ubound, -1)


if __name__ == "__main__":
    unittest.main()
