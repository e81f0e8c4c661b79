"""Every class the library registers, created from Python: each comes back
as a Dispatch whose member names are distinct without regard to case. What
the classes do is tested in C++; this checks only that the bridge wraps
every one of them."""

import unittest

import qvglobal

REGISTERED = set(qvglobal.RegisteredClasses())


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


if __name__ == "__main__":
    unittest.main()
