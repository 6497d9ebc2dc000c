#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""numpy's np.interp over the file and the times of bench/batch.cpp.

Reads the SBET file that kelvo_bench_batch writes, builds the same 20,000,000 increasing and
10,000,000 shuffled UTC times, turns them into the file's GPS seconds of week (untimed),
then times np.interp of latitude, longitude, height, roll, pitch and yaw at every time, a
million times per call. Prints the median of three runs of each as queries per second of
CPU time, "increasing shuffled". Run it with Debian's /usr/bin/python3 (python3-numpy).

    /usr/bin/python3 bench/batch_numpy.py <sbet file>
"""
import statistics
import sys
import time

import numpy as np

INCREASING = 20_000_000
SHUFFLED = 10_000_000
CHUNK = 1_000_000
RATE = 200.0
WEEK_START = 1719100800.0  # Sunday 2024-06-23 00:00:00 UTC
LEAP_SECONDS = 18.0


def requests(times, count):
    """The UTC requests of bench/batch.cpp, as the file's GPS seconds of week."""
    first = WEEK_START + (times[0] - LEAP_SECONDS)
    step = (len(times) - 1) / RATE / count
    utc = first + step * np.arange(count, dtype=np.float64)
    return utc - WEEK_START + LEAP_SECONDS


def rate(gps, times, columns):
    rates = []
    for _ in range(3):
        checksum = 0.0
        start = time.process_time()
        for offset in range(0, len(gps), CHUNK):
            chunk = gps[offset:offset + CHUNK]
            blended = [np.interp(chunk, times, column) for column in columns]
            checksum += blended[2][-1]
        rates.append(len(gps) / (time.process_time() - start))
    return statistics.median(rates)


def main(path):
    records = np.fromfile(path, dtype="<f8").reshape(-1, 17)
    times = np.ascontiguousarray(records[:, 0])
    yaw = records[:, 9] - records[:, 10]  # heading - wander angle
    columns = [np.ascontiguousarray(c) for c in (records[:, 1], records[:, 2], records[:, 3], records[:, 7],
                                                  records[:, 8], yaw)]
    increasing = requests(times, INCREASING)
    shuffled = requests(times, SHUFFLED)
    np.random.default_rng(1).shuffle(shuffled)
    print(f"{rate(increasing, times, columns):.0f} {rate(shuffled, times, columns):.0f}")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
