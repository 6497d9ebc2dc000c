#!/usr/bin/python3
# SPDX-License-Identifier: MIT
# Writes the seed corpora of the fuzz targets (corpus/<target>/seed-*) from tests/refdata
# and small files made here, in the input layout of each target (see the comment at the top
# of each *Fuzzer.cpp). Run it again after changing a layout; the corpora are kept in git.
import pathlib
import random
import struct

HERE = pathlib.Path(__file__).resolve().parent
REFDATA = HERE.parent / "refdata"
rng = random.Random(20240624)


def write(target, name, data):
    folder = HERE / "corpus" / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / f"seed-{name}").write_bytes(data)


def ref(path):
    return (REFDATA / path).read_bytes()


def pos_head(path, data_lines):
    """The header and the first data lines of an RTKLIB file, line ends kept."""
    lines = ref(path).splitlines(keepends=True)
    header = [line for line in lines if line.startswith(b"%")]
    data = [line for line in lines if not line.startswith(b"%")]
    return b"".join(header + data[:data_lines])


def sbet_record(time, step=0):
    values = [time, 0.84 + 1e-7 * step, 0.2, 560.0 + step, 1.0, 2.0, 0.0, 0.01, 0.02, 1.0, 0.0, 0.1, 0.2, 9.8,
              0.001, 0.002, 0.003]
    return struct.pack("<17d", *values)


def apx_record(milliseconds, alignment=5, flag=1):
    return (b"\x00" * 7 + b"\x01\x02" + struct.pack(">H", 7) + struct.pack(">IBB", milliseconds, alignment, flag)
            + struct.pack(">3d", 48.1, 11.5, 560.0) + struct.pack(">4f", 1.0, 2.0, 0.0, 0.0)
            + struct.pack(">4d", 0.5, 1.0, 35.0, 0.0) + struct.pack(">6f", 0.1, 0.2, 0.3, 0.01, 0.02, 0.03)
            + b"\x00\x00")


def queries(count):
    return bytes(rng.randrange(256) for _ in range(count))


def u16(value):
    """Two bytes that FuzzedDataProvider reads back from the end of an input as `value`."""
    return bytes([value & 0xFF, value >> 8])


leeward = ref("leeward/sbet.out")
two_points = ref("pdal/2-points.sbet")
sbets = {
    "2-points": two_points,
    "leeward-10": leeward[: 10 * 136],
    "one-record": leeward[:136],
    "backwards": b"".join(sbet_record(400.0 - i) for i in range(3)),
    "pdal-badfile": ref("pdal/badfile.sbet"),
    "empty": b"",
}
for name, data in sbets.items():
    write("sbet_reader", name, data + b"\x01")

apx = b"".join(apx_record(116418000 + i, alignment=i) for i in range(6))
apxs = {
    "six-records": apx,
    "partial-last": apx[: 2 * 115 + 50],
    # Shorter than one record: reading it never reached its end.
    "114-bytes": apx[:114],
    "7-bytes": apx[:7],
    "sbet-bytes": two_points[:230],
}
for name, data in apxs.items():
    write("apx_raw_reader", name, data + b"\x02\x04")

smrmsg = ref("pdal/smrmsg.smrmsg")
write("smrmsg_reader", "pdal-5", smrmsg[: 5 * 80])
write("smrmsg_reader", "pdal-cut", smrmsg[: 2 * 80 + 33])
write("smrmsg_reader", "empty", b"")

positions = {
    "spirent": pos_head("rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos", 6),
    "gsi": pos_head("rtklib/spp_vel_gsi0759.pos", 4),
    "hms": pos_head("rtklib/rtk_kinematic_vel_hms.pos", 2),
    "novel": pos_head("rtklib/rtk_kinematic_novel.pos", 2),
    "xyz": pos_head("rtklib/spp_vel_xyz_crescent.pos", 2),
    "corrupt": ref("rtklib/public/instinct/corrupt_inside_data.pos"),
    "no-header": ref("rtklib/public/instinct/corrupt_header_missing.pos"),
    "lla-000": ref("rtklib/public/instinct/lla_gpst_000_dd.pos"),
}
for name, text in positions.items():
    write("pos_line", name, text)
    write("gnss_provider", name, text + queries(48) + u16(len(text)) + b"\x00")

provider_files = {
    "sbet-one-file": (leeward[: 12 * 136], 0, 0x00),
    "sbet-two-files": (leeward[: 12 * 136], 6 * 136, 0x02),
    "sbet-day-transform": (leeward[: 8 * 136], 0, 0x18),
    "apx-one-file": (apx, 0, 0x01 | (5 << 5)),
    "apx-two-files-day": (apx, 3 * 115, 0x0B),
    "mixed-extensions": (leeward[: 4 * 136] + apx[:230], 4 * 136, 0x06),
}
for name, (data, split, flags) in provider_files.items():
    write("position_attitude_provider", name, data + queries(64) + u16(len(data)) + u16(split) + bytes([flags]))

commands = {
    "info": ["info", "s.sbet", "t.stream", "g.pos"],
    "info-smrmsg": ["info", "--format", "smrmsg", "m.smrmsg"],
    "info-bad": ["info", "e.sbet", "x.sbet"],
    "at-every": ["at", "s.sbet", "--every", "0.001", "--week", "2320"],
    "at-day": ["at", "t.stream", "--day", "--times", "day.txt", "--alignment", "no_solution", "--json"],
    "at-times": ["at", "s.sbet", "--times", "times.txt", "--keep-missing"],
    "at-time": ["at", "s.sbet", "--time", "1719217200.0025,1719217100"],
    # Once a grid that never ended, and one that filled memory before its first answer.
    "at-every-1e-7": ["at", "s.sbet", "--every", "1e-7", "--week", "2320"],
    "at-every-1e-6": ["at", "s.sbet", "--every", "1e-6", "--week", "2320"],
    "gnss-every": ["gnss", "g.pos", "--every", "0.0005", "--velocity-threshold", "0"],
    "gnss-sow": ["gnss", "g.pos", "--sow", "116418.0015", "--keep-missing", "--json"],
    "dump": ["dump", "t.stream", "--limit", "3", "--radians"],
    "convert": ["convert", "--from", "llh", "--to", "ned", "--center", "48,11,500", "48.1", "11.2", "520"],
    "utm": ["utm", "48.137154", "11.576124"],
    "help": ["--help"],
    "version": ["--version"],
}
for name, arguments in commands.items():
    write("tool_arguments", name, "\n".join(arguments).encode())
