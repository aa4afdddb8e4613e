#!/usr/bin/env python3
"""Writes the CSV inputs of whole_process.sh: a damped sine as one curve, and
a DDR-like data eye folded at its unit interval (X wraps back every period,
so the chart draws the eye without its retrace).

usage: make_bench_data.py curve|eye SAMPLES OUT.csv
"""
import math
import random
import sys

kind, n, out = sys.argv[1], int(sys.argv[2]), sys.argv[3]
ui = 625e-12
per_period = 200
rng = random.Random(15)
block = 100000
with open(out, "w") as f:
    f.write("Time (s),%s\n" % ("signal" if kind == "curve" else "DQ"))
    level = 0
    for start in range(0, n, block):
        lines = []
        for i in range(start, min(n, start + block)):
            if kind == "curve":
                t = i * 1e-12
                y = 0.6 + 0.5 * math.exp(-i * 5.0 / n) * math.sin(i * 0.01)
                lines.append("%.6e,%.6f" % (t, y))
            else:
                k = i % per_period
                if k == 0:
                    prev, level = level, rng.randint(0, 1)
                    jitter = rng.gauss(0.0, 8e-12)
                # a 150 ps edge centred on the period start, plus noise
                t = k * ui / per_period
                s = min(1.0, max(0.0, (t - jitter) / 150e-12 + 0.5))
                y = 0.6 * (prev + (level - prev) * s) + rng.gauss(0.0, 0.01)
                lines.append("%.6e,%.6f" % (t, y))
        f.write("\n".join(lines))
        f.write("\n")
