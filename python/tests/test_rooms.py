"""Numbering a project's rooms in walking order from Python, through
CQVGlobalFunctions.SortOrderNumRooms, on a module file made through the
library's own table creation (linked levels opened by getTable). The walk
itself, the iterator and the interval are tested in C++."""

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
