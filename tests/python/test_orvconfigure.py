"""The Python module, on an installation that orvcfg makes. ctest sets ORVCFG, GRID and EXAMPLE."""
import math
import os
import pathlib
import subprocess
import sys
import tempfile
import threading
import unittest
from datetime import datetime, timezone

import numpy as np

import orvconfigure as orv

RD = "GeoidModelRDNAP2018"
folder = tempfile.TemporaryDirectory()
root = pathlib.Path(folder.name) / "Häfen"


def orvcfg(*arguments):
    subprocess.run([os.environ["ORVCFG"], *arguments], check=True, capture_output=True)


def setUpModule():
    system = str(root / "system")
    orvcfg("init", str(root))
    orvcfg("--system", system, "geoid", "add", os.environ["GRID"])
    orvcfg("--system", system, "project", "create", "Harbour", "--group", "Netherlands", "--coord-system",
           "RD New - NAP 2018", "--geoid", RD, "--geoid-file", "nlgeo2018.gtx")
    orv.open_installation(system)
    orv.open_project("Harbour")


def tearDownModule():
    folder.cleanup()


class Files(unittest.TestCase):
    def test_a_change_leaves_the_rest_of_the_file_alone(self):
        path = root / "a.ini"
        path.write_bytes(b"; mine\r\n[Size]\r\nWidth = 2\r\nName=K\xc3\xa4fer\r\n")
        file = orv.ConfigFile(path)
        file.set("Size", "Width", 0.1 + 0.2)
        file.set("Size", "Open", True)
        file.save()
        self.assertEqual(path.read_bytes(), b"; mine\r\n[Size]\r\nWidth = 0.30000000000000004\r\n"
                                            b"Name=K\xc3\xa4fer\r\nOpen=1\r\n")
        file = orv.ConfigFile(os.fsencode(path))
        self.assertEqual(file.items("Size"), [("Width", "0.30000000000000004"), ("Name", "Käfer"), ("Open", "1")])
        self.assertEqual((file.get_float("Size", "Width"), file.get_bool("Size", "Open")), (0.1 + 0.2, True))
        file.remove("Size", "Open")
        self.assertFalse(file.has("Size", "Open"))
        file.remove("Size")
        self.assertEqual(file.sections(), [])

    def test_a_signature_covers_what_is_signed(self):
        path = root / "signed.ini"
        file = orv.ConfigFile(path, create=True)
        file.set("Size", "Width", 2)
        self.assertEqual(file.verify(), "unsigned")
        file.sign()
        file.save()
        self.assertEqual(orv.ConfigFile(path).verify(), "valid")
        path.rename(root / "renamed.ini")
        self.assertEqual(orv.ConfigFile(root / "renamed.ini").verify(), "title changed")
        file.set("Size", "Width", 3)
        self.assertEqual(file.verify(), "content changed")

    def test_failures_are_exceptions_with_words(self):
        file = orv.ConfigFile(root / "new.ini", create=True)
        file.set("Size", "Width", "two")
        rows = [
            (lambda: orv.ConfigFile(root / "nosuch.ini"), orv.Error, "nosuch.ini: no such file"),
            (lambda: file.get("Size", "Height"), KeyError, "Size.*Height"),
            (lambda: file.get_int("Size", "Width"), ValueError, "two"),
            (lambda: file.set("Size", "a=b", 1), ValueError, "a=b"),
            (lambda: file.set("Size", "Width", None), TypeError, ""),
            (lambda: file.remove("Nowhere"), KeyError, "Nowhere"),
            (lambda: orv.ConfigFile(root, create=True), orv.Error, "Häfen: "),
            (lambda: file.save(root / "no" / "such"), orv.Error, "no such file or folder"),
            (lambda: orv.open_installation(root), orv.Error, "ORV.ini: no such file"),
            (lambda: orv.open_project("Habour"), orv.Error, "Habour/Project.prj: no such project"),
            (lambda: orv.folder("Logs"), KeyError, "Logs"),
            (lambda: orv.file_path("Tide", "x"), KeyError, "Tide"),
            (lambda: orv.Geoid("NoModel"), KeyError, "NoModel"),
            (lambda: orv.Geoid(2**40), KeyError, ""),
            (lambda: orv.Geoid(None), TypeError, "key"),
            (lambda: orv.Geoid(RD, "other.gtx"), orv.Error, "other.gtx: the model's file"),
            (lambda: orv.TideStation(root / "nosuch.ts"), orv.Error, "nosuch.ts: no such file"),
            (lambda: orv.ConfigFile("new.ini\0"), ValueError, "null"),
            (lambda: orv.TideStation(root / "G.ts", create=True).values([]), ValueError, "no single time"),
            (lambda: orv.SoundVelocityProfile([1, math.nan], 1500), ValueError, "no number"),
            (lambda: orv.parse_log_name("Waverly"), ValueError, "Waverly"),
            (lambda: orv.compose_log_name("", "Sweep", "L1", 1), ValueError, "vessel"),
            (lambda: orv.compose_log_name("W", "Sweep", "L1", 10**30), ValueError, "time"),
        ]
        for number, (call, kind, words) in enumerate(rows):
            with self.subTest(row=number), self.assertRaisesRegex(kind, words):
                call()


class Places(unittest.TestCase):
    def test_folders_and_files_are_those_of_the_project(self):
        self.assertEqual(orv.projects(), ["Harbour"])
        self.assertEqual(pathlib.Path(orv.folder("CurrentProject")), root / "Projects" / "Harbour")
        path = pathlib.Path(orv.file_path("SVProfile", "Cast"))
        self.assertTrue(path.is_relative_to(orv.folder("CurrentProject")))
        path.parent.mkdir(exist_ok=True)
        path.touch()
        self.assertEqual(orv.file_names("SVProfile"), ["Cast"])


class Heights(unittest.TestCase):
    latitude = np.array([[52.96], [57.1], [math.nan]])
    longitude = np.array([4.79, 4.80])

    def test_shapes_follow_numpy_and_gaps_tell_why(self):
        for ask in (orv.Geoid(28, "nlgeo2018.gtx").separation, orv.height_separation):
            values, why = ask(self.latitude, self.longitude, reasons=True)
            self.assertEqual((values.shape, why.shape), ((3, 2), (3, 2)))
            self.assertEqual(values[0, 0], ask(52.96, 4.79))
            self.assertIsInstance(ask(52.96, 4.79), float)
            self.assertAlmostEqual(values[0, 0], 42.1423, 4)
            self.assertIsNone(why[0, 1])
            self.assertTrue(np.isnan(values[1:]).all())
            self.assertIn("outside", why[1, 0])
            self.assertEqual(ask([], []).shape, (0,))
            with self.assertRaises(ValueError):
                ask([1, 2], [1, 2, 3])

    def test_threads_ask_while_projects_are_opened(self):
        geoid = orv.Geoid(RD, "nlgeo2018.gtx")
        latitude = np.linspace(52.95, 52.97, 20000)
        expected, wrong = geoid.separation(latitude, 4.79), []

        def ask():
            for _ in range(5):
                for values in (geoid.separation(latitude, 4.79), orv.height_separation(latitude, 4.79)):
                    if not np.allclose(values, expected, atol=1e-9):
                        wrong.append(values)

        threads = [threading.Thread(target=ask) for _ in range(3)]
        for thread in threads:
            thread.start()
        for _ in range(5):
            orv.open_project("Harbour")
        for thread in threads:
            thread.join()
        self.assertEqual(wrong, [])


class SurveyFiles(unittest.TestCase):
    def test_tides_by_both_kinds_of_time(self):
        path = root / "Gauge.ts"
        station = orv.TideStation(path, create=True)
        station.offset = 0.5
        station.longest_gap, station.longest_hold = 3600e3, None
        start = np.datetime64("2024-03-31T23:50", "m")
        times = start + np.array([0, 10, 20, 200]) * np.timedelta64(1, "m")
        station.add(times, [1.0, 2.0, 3.0, 4.0])
        station.save()
        station = orv.TideStation(path)
        first, values = station.values()
        np.testing.assert_array_equal(values, [1, 2, 3, 4])
        np.testing.assert_array_equal(first, times.astype("datetime64[ms]").astype(float))
        np.testing.assert_array_equal(station.interpolate(times + np.timedelta64(5, "m")), [1.5, 2.5, math.nan, math.nan])
        self.assertEqual(station.interpolate(first[0] + 300e3), 1.5)
        self.assertTrue(math.isnan(station.interpolate(np.datetime64("NaT"))))
        self.assertEqual(station.values(times[1], times[2])[1].tolist(), [2, 3])
        with self.assertRaisesRegex(ValueError, "already"):
            station.add(times[0], 1)

    def test_a_profile_keeps_its_order_offset_and_file(self):
        profile = orv.SoundVelocityProfile([-3, -1, -2], [1503, 1501, 1502], offset=0.5)
        self.assertEqual(profile.samples().tolist(), [[-1, 1501], [-2, 1502], [-3, 1503]])
        profile.save(root / "cast.svp")
        again = orv.SoundVelocityProfile(root / "cast.svp")
        np.testing.assert_array_equal(again.samples(with_offset=True)[:, 1], [1501.5, 1502.5, 1503.5])
        dense = orv.SoundVelocityProfile(-np.arange(0, 60, 0.1), np.full(600, 1500.0))
        self.assertLess(len(dense.reduced()), 40)
        self.assertEqual(len(dense), 600)

    def test_log_names_there_and_back(self):
        time = datetime(2024, 3, 1, 7, tzinfo=timezone.utc)
        name = orv.compose_log_name("Waverly", "Sweep", "L-1", time, replay_time=1709280000, replay_count=2)
        fields = orv.parse_log_name("/logs/" + name + ".dat")
        self.assertEqual((fields.vessel, fields.survey_type, fields.runline), ("Waverly", "Sweep", "L~1"))
        self.assertEqual((fields.time, fields.replay_time, fields.replay_count), (time.timestamp(), 1709280000, 2))


class Example(unittest.TestCase):
    def test_the_day_of_the_example(self):
        run = subprocess.run([sys.executable, os.environ["EXAMPLE"], str(root / "system"), "Harbour"],
                             check=True, capture_output=True, text=True)
        for words in ("Harbour/LogData", "   7.955 m", "*   ", "2024-03-01T07:04 +", "samples reduced to", "run line L001"):
            self.assertIn(words, run.stdout)


if __name__ == "__main__":
    unittest.main()
