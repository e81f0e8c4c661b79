"""The room classes from Python, on a module file made through the library's
own table creation (linked levels opened by getTable): the iterator's keys
as an array and compared with a Python list, the interval's walk, and the
numbering of rooms in walking order. The walks' edge cases and errors are
tested in C++."""

import contextlib
import os
import sqlite3
import tempfile
import unittest

import qvglobal

LEVELS = ["Gebaeude", "Stock", "Wohnung", "Raum"]
# (keys, "OrderNum"): storey S2 is empty, and R2 comes before R1.
RECORDS = [
    (("G1",), 0), (("G2",), 1),
    (("G1", "S1"), 0), (("G1", "S2"), 1), (("G1", "S3"), 2), (("G2", "S1"), 0),
    (("G1", "S1", "W1"), 0), (("G1", "S3", "W1"), 0), (("G2", "S1", "W1"), 0),
    (("G1", "S1", "W1", "R2"), 0), (("G1", "S1", "W1", "R1"), 5),
    (("G1", "S3", "W1", "R1"), 0), (("G2", "S1", "W1", "R1"), 0),
]
WALK = [("G1", "S1", "W1", "R2"), ("G1", "S1", "W1", "R1"),
        ("G1", "S3", "W1", "R1"), ("G2", "S1", "W1", "R1")]


def create(name):
    return qvglobal.CreateObject("qvglobal10." + name)


class RoomsTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        path = os.path.join(self.folder.name, "Haus_EZ.qv3")
        with contextlib.closing(sqlite3.connect(path)) as db:
            db.execute('CREATE TABLE qvversions ("Name" VARCHAR(255) '
                       'COLLATE NOCASE PRIMARY KEY, "Version" INTEGER)')
            db.commit()
        self.container = create("CQvDbContainer")
        self.con = self.container.getQvProjectConnection(path)
        for depth, level in enumerate(LEVELS):
            keys = []
            for name in LEVELS[:depth + 1]:
                keys += [name, 202, 20]
            self.con.addTable(level, 1, keys, ["OrderNum", 3], False)
            if depth:
                self.con.setChild(LEVELS[depth - 1], level)
        self.tables = [self.con.getTable(LEVELS[0])] + [
            self.con.getTable(level, True) for level in LEVELS[1:]]
        for keys, order in RECORDS:
            rs = self.tables[len(keys) - 1]
            rs.clearVars()
            for name, key in zip(LEVELS, keys):
                rs.setValue(name, key)
            rs.setValue("OrderNum", order)
            rs.insertRecord()

    def tearDown(self):
        self.container.closeQvConnection(self.con)
        self.folder.cleanup()

    def iterator(self):
        it = create("CRoomIterator_t_")
        it.init(*self.tables)
        return it

    def test_walks_and_compares_keys(self):
        it = self.iterator()
        seen, ok = [], it.FirstRoom()
        while ok:
            seen.append((it.Gebaeude, it.Stock, it.Wohnung, it.Raum))
            ok = it.NextRoom()
        self.assertEqual(seen, WALK)
        # Off the end the iterator stays on the last room.
        keys = it.GetCurRoomKeys()
        self.assertEqual((keys.lbound, list(keys)), (0, list(WALK[3])))
        self.assertIs(it.EqualRoom(["g2", "s1", "w1", "r1"]), True)

    def test_interval(self):
        interval = create("CRoomIntervall_t_")
        interval.init(*self.tables)
        self.assertIs(interval.startIntervall("G1", "S1", "W1", "R1"), True)
        self.assertIs(interval.endIntervall("G2", "S1", "W1", "R1"), True)
        rooms, seen = self.tables[3], []
        ok = interval.firstRec(rooms)
        while ok:
            seen.append(tuple(rooms.getValue(n) for n in LEVELS))
            ok = interval.nextRec(rooms)
        self.assertEqual(seen, WALK[1:])

    def test_numbering_in_walking_order(self):
        rooms = create("QvDs")
        everything = create("QvRecordset")
        everything.openTable(self.con.m_conConnection, "Raum")
        rooms.loadFromRecordset(everything, LEVELS + ["OrderNum"])
        create("CQVGlobalFunctions").SortOrderNumRooms(rooms, *self.tables)
        everything.readBlock(0, True)
        numbers = {}
        ok = not everything.isEOF()
        while ok:
            key = tuple(everything.getValue(n) for n in LEVELS)
            numbers[key] = everything.getValue("OrderNum")
            everything.moveNext()
            ok = not everything.isEOF()
        self.assertEqual(numbers, {room: i for i, room in enumerate(WALK)})


if __name__ == "__main__":
    unittest.main()
