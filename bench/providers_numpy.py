#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""numpy's np.interp over the file and the times of bench/providers.cpp.

Reads the SBET file that kelvo_bench_providers writes, builds the same 20,000,000 increasing
UTC times, turns them into the file's GPS seconds of week (untimed), then times np.interp of
latitude, longitude, height, roll, pitch and heading at every time, a million times per call.
Prints the median of three runs as queries per second of CPU time, the clock Google Benchmark
reports. Run it with Debian's /usr/bin/python3, which has python3-numpy.

    /usr/bin/python3 bench/providers_numpy.py <sbet file>
"""
import statistics
import sys
import time

import numpy as np

QUERIES = 20_000_000
CHUNK = 1_000_000
RATE = 200.0
WEEK_START = 1719100800.0  # Sunday 2024-06-23 00:00:00 UTC
LEAP_SECONDS = 18.0
COLUMNS = (1, 2, 3, 7, 8, 9)  # latitude, longitude, height, roll, pitch, heading


def main(path):
    records = np.fromfile(path, dtype="<f8").reshape(-1, 17)
    times = np.ascontiguousarray(records[:, 0])
    columns = [np.ascontiguousarray(records[:, c]) for c in COLUMNS]

    # The requests of bench/providers.cpp: first + step * i, in UTC seconds since 1970.
    first = WEEK_START + (times[0] - LEAP_SECONDS)
    step = (len(times) - 1) / RATE / QUERIES
    requests = first + step * np.arange(QUERIES, dtype=np.float64)
    gps = requests - WEEK_START + LEAP_SECONDS
    assert gps[0] >= times[0] and gps[-1] <= times[-1]

    rates = []
    for _ in range(3):
        checksum = 0.0
        start = time.process_time()
        for offset in range(0, QUERIES, CHUNK):
            chunk = gps[offset:offset + CHUNK]
            blended = [np.interp(chunk, times, column) for column in columns]
            checksum += blended[2][-1]
        elapsed = time.process_time() - start
        rates.append(QUERIES / elapsed)
    print(f"{statistics.median(rates):.0f}")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
