"""Every class the library registers, created from Python: each comes back
as a Dispatch. What the classes do and which members they have is tested in
C++; this checks only that the bridge wraps every one of them."""

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


if __name__ == "__main__":
    unittest.main()
