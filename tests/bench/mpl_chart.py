#!/usr/bin/python3
"""The chart that whole_process.sh asks of plotvane-render, drawn by matplotlib
(Agg) for comparison: same CSV, same 1600x1000 picture, every sample drawn.
A step backwards in X breaks the line, as the chart leaves the retrace of a
folded eye undrawn.

usage: mpl_chart.py IN.csv OUT.png
"""
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402
import numpy as np  # noqa: E402

data = np.loadtxt(sys.argv[1], delimiter=",", skiprows=1)
x, y = data[:, 0], data[:, 1]
back = np.nonzero(np.diff(x) < 0)[0] + 1
if back.size:
    x = np.insert(x, back, np.nan)
    y = np.insert(y, back, np.nan)
fig = plt.figure(figsize=(16, 10), dpi=100)
ax = fig.add_subplot(1, 1, 1)
ax.plot(x, y, linewidth=1.0)
ax.grid(True)
ax.set_xlabel("Time (s)")
ax.set_ylabel("Voltage (V)")
fig.savefig(sys.argv[2])
