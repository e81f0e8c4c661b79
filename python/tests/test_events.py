"""Python event sinks: the report event BefPrRowDetSec of
qvglobal10.CQvAREvents raised to sinks written in Python."""

import unittest

import qvglobal


def create(name):
    return qvglobal.CreateObject("qvglobal10." + name)


class BoldSink:
    def __init__(self):
        self.rows = []

    def BefPrRowDetSec(self, ARBefDetSecParam, vChangeRowValues):
        self.rows.append((ARBefDetSecParam.RowQvDs, list(vChangeRowValues)))
        ARBefDetSecParam.Bold = True
        vChangeRowValues[1] = vChangeRowValues[1].upper()


class ByRefSink:
    """Replaces the whole array through its ByRef box."""

    def befprrowdetsec(self, param, values: qvglobal.ByRef):
        values.value = qvglobal.SafeArray(list(values.value) + ["added"], 0)
        param.AddRow = True


class ReplacingSink:
    """Replaces the whole array, without annotating its handler."""

    def BefPrRowDetSec(self, param, values):
        self.kinds = (type(param).__name__, type(values).__name__)
        values.value = ["neu", "n%d" % len(values)]


class ReportEventTest(unittest.TestCase):
    def setUp(self):
        self.events = create("CQvAREvents")
        self.param = create("CARBefDetSecParam_t_")
        self.param.init(7, 3, False)

    def raise_row(self, values):
        box = qvglobal.ByRef(values)
        self.events.REBefPrRowDetSec(self.param, box)
        return box.value

    def test_sink_changes_parameter_and_row(self):
        sink = BoldSink()
        self.events.advise(sink)
        self.assertEqual(self.raise_row(["R1", "bad"]), ["R1", "BAD"])
        self.assertEqual(sink.rows, [(7, ["R1", "bad"])])
        self.assertIs(self.param.Bold, True)

    def test_sink_gets_the_array_boxed_and_replaces_it(self):
        sink = ReplacingSink()
        self.events.advise(sink)
        self.events.advise(BoldSink())
        self.assertEqual(self.raise_row(["R1", "x", "y"]), ["neu", "N3"])
        self.assertEqual(sink.kinds, ("Dispatch", "ByRef"))

    def test_sinks_run_in_order_of_advising_passing_over_others(self):
        class Other:  # a sink without the event
            pass

        self.events.advise(BoldSink())
        self.events.advise(Other())
        self.events.advise(ByRefSink())
        self.assertEqual(self.raise_row(["R1", "x"]), ["R1", "X", "added"])
        self.assertIs(self.param.AddRow, True)

    def test_unadvise_by_sink_and_by_cookie(self):
        first, second = BoldSink(), BoldSink()
        self.events.advise(first)
        cookie = self.events.advise(second)
        self.events.unadvise(first)
        self.raise_row(["R1", "x"])
        self.assertEqual((len(first.rows), len(second.rows)), (0, 1))
        self.events.unadvise(cookie)
        self.raise_row(["R1", "x"])
        self.assertEqual(len(second.rows), 1)
        with self.assertRaises(qvglobal.ComError) as cm:
            self.events.unadvise(first)
        self.assertEqual((cm.exception.number, cm.exception.description),
                         (5, "Invalid procedure call or argument"))

    def test_error_of_a_sink_reaches_the_caller(self):
        class Failing:
            def BefPrRowDetSec(self, param, values):
                raise KeyError("Raum")

        self.events.advise(Failing())
        with self.assertRaises(qvglobal.ComError) as cm:
            self.raise_row(["R1"])
        self.assertEqual(cm.exception.number, 440)
        self.assertEqual(cm.exception.description, "KeyError: 'Raum'")
        self.assertIsInstance(cm.exception.__cause__, KeyError)

    def test_missing_member_inside_a_sink_is_not_passed_over(self):
        class Typo:
            def BefPrRowDetSec(self, param, values):
                param.Boldd = True

        self.events.advise(Typo())
        with self.assertRaises(qvglobal.ComError) as cm:
            self.raise_row(["R1"])
        self.assertEqual(
            (cm.exception.number, cm.exception.source, str(cm.exception)),
            (438, "Python", "Object doesn't support this property or method"))

    def test_objects_without_events(self):
        with self.assertRaises(qvglobal.ComError) as cm:
            self.param.advise(BoldSink())
        self.assertEqual((cm.exception.number, cm.exception.description),
                         (438, "Object doesn't support this property or method"))


if __name__ == "__main__":
    unittest.main()
