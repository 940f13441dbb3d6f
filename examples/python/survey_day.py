#!/usr/bin/env python3
"""A survey day from a script, cell by cell (an editor that knows "# %%" runs them one at a time).

Usage: survey_day.py SYSTEM-FOLDER PROJECT
"""
# %% The installation and the project, opened as any application of the suite does.
import os
import sys
from datetime import datetime, timezone

import numpy as np

import orvconfigure as orv

system_folder, project = sys.argv[1:3]
orv.open_installation(system_folder)
orv.open_project(project)
print("logs go to", orv.folder("LogData"))

# %% Heights of an antenna along a line, one of which lies outside the model.
latitude = np.linspace(52.95, 52.97, 5)
longitude = np.full_like(latitude, 4.79)
latitude[-1] = 57.1
ellipsoidal = np.array([50.11, 50.12, 50.14, 50.13, 50.10])
separation, why = orv.height_separation(latitude, longitude, reasons=True)
for height, reason in zip(ellipsoidal - separation, why):
    print(f"{height:8.3f} m" if reason is None else f"{'*':>8}   {reason}")

# %% A tide gauge with a value each ten minutes, asked each minute.
path = orv.file_path("TideStation", "Quay")
os.makedirs(os.path.dirname(path), exist_ok=True)
station = orv.TideStation(path, create=True)
if len(station) == 0:
    station.longest_gap = 30 * 60e3
    times = np.arange("2024-03-01T06:00", "2024-03-01T12:10", np.timedelta64(10, "m"), dtype="datetime64[m]")
    station.add(times, 1.1 * np.sin(np.arange(times.size) * 10 / 745 * 2 * np.pi))
    station.save()
minutes = np.arange("2024-03-01T07:00", "2024-03-01T07:05", dtype="datetime64[m]")
for minute, tide in zip(minutes, station.interpolate(minutes)):
    print(minute, f"{tide:+.3f} m")

# %% A dense cast, thinned.
depths = -np.arange(0, 60, 0.1)
profile = orv.SoundVelocityProfile(depths, 1480 + depths * 0.05 + np.sin(depths))
print(f"{len(profile)} samples reduced to {len(profile.reduced())}")

# %% The name of the log that belongs to it, and back.
name = orv.compose_log_name("Waverly", "Sweep", "L001", datetime(2024, 3, 1, 7, 0, tzinfo=timezone.utc))
print(name, "is run line", orv.parse_log_name(name).runline)
