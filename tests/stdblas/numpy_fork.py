#!/usr/bin/python3
"""numpy on ork's libblas.so.3 across fork() (run with LD_LIBRARY_PATH set to
the folder given as the argument): after a threaded product in the parent,
the workers of a fork-started multiprocessing.Pool each make the same
product, get the parent's bits, and run it on more than one thread. A hang
fails after a time limit instead of stalling the suite.
"""
import multiprocessing
import os
import sys
import threading
import time

import numpy as np

folder = os.path.realpath(sys.argv[1])
ork_blas = os.path.realpath(os.path.join(folder, "libblas.so.3"))
with open("/proc/self/maps") as f:
    mapped = {os.path.realpath(line.split()[-1]) for line in f if "/" in line}
if ork_blas not in mapped:
    sys.exit(f"FAILED: ork's libblas.so.3 is not mapped ({ork_blas})")

n = 600  # 600^3 multiply-adds: split over threads
rng = np.random.default_rng(11)
a, b = rng.standard_normal((n, n)), rng.standard_normal((n, n))
expected = (a @ b).tobytes()


def most_threads_during(task):
    """task()'s result and the largest thread count of this process sampled
    while it ran (the sampling thread is one of them)."""
    most, done = [0], threading.Event()

    def sample():
        while not done.is_set():
            most[0] = max(most[0], len(os.listdir("/proc/self/task")))
            time.sleep(0.0005)

    sampler = threading.Thread(target=sample)
    sampler.start()
    try:
        result = task()
    finally:
        done.set()
        sampler.join()
    return result, most[0]


def work(i):
    products, most = most_threads_during(lambda: [a @ b for _ in range(4)])
    return i, all(p.tobytes() == expected for p in products), most


problems = []
try:
    with multiprocessing.get_context("fork").Pool(2) as pool:
        results = pool.map_async(work, range(4)).get(timeout=120)
except multiprocessing.TimeoutError:
    sys.exit("FAILED: the fork-started pool's workers did not answer within 120 s")
for i, same, most in results:
    ok = same and most >= 3  # the worker, the sampler and at least one helper
    print(f"{'ok' if ok else 'FAILED'}: task {i}: parent's bits {same}, at most {most} threads while computing")
    if not ok:
        problems.append(i)
print("FAILED" if problems else "all passed")
sys.exit(1 if problems else 0)
