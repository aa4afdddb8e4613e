#!/usr/bin/python3
"""Compares PNG files by their decoded pixels, not their bytes: the encoder's
settings may change the file while the picture stays the same.

usage: same_pixels.py A.png B.png [A2.png B2.png ...]
Prints "same pixels NAME" or "DIFFERENT NAME" for each pair; exits 1 when
any pair differs.
"""
import sys

from PIL import Image

args = sys.argv[1:]
if not args or len(args) % 2:
    sys.exit(__doc__)
bad = 0
for a, b in zip(args[::2], args[1::2]):
    ia, ib = Image.open(a), Image.open(b)
    same = ia.size == ib.size and ia.convert("RGBA").tobytes() == ib.convert("RGBA").tobytes()
    print(("same pixels " if same else "DIFFERENT ") + b)
    bad |= not same
sys.exit(1 if bad else 0)
