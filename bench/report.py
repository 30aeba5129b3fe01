#!/usr/bin/env python3
"""Measures everything in one run and prints it as one table: report.py BUILD [--repetitions N]

Times are minima over interleaved repetitions, which vary least on a busy machine. A ratio above 1
means that this project is the faster one.
"""

import argparse
import json
import math
import os
import pathlib
import subprocess
import tempfile
import time

# (what, size): the fastest peer takes at least so many times our time; for trees of any size as long.
PEER_GOALS = {
    ("load", "2.6 KB"): 8, ("load", "1 MB"): 12, ("load", "50 MB"): 10, ("load", "200,000 keys"): 5,
    ("load file", "2.6 KB"): 2.8,
    ("look up", "2.6 KB"): 1.7, ("look up", "1 MB"): 3, ("look up", "50 MB"): 1.4,
}
SCAN_GOALS = {"1 MB": 0.35, "50 MB": 0.25}
LOOK_UP_NANOSECONDS = 60
OTHER_CASE_GOAL = 1.35
GROWTH_GOAL = 1.15
KEYS_GROWTH_GOAL = 1.3
FILES = 10_000
LOG = "2026-01-01 00:00:00 agent: another program's line, as most lines of such a log are\n"


def run_benchmarks(build, repetitions, which):
    """The least time in nanoseconds by the benchmark's name."""
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        subprocess.run(
            [build / "bench/config_bench", f"--benchmark_filter={which}",
             f"--benchmark_repetitions={repetitions}",
             "--benchmark_enable_random_interleaving=true", "--benchmark_min_time=0.01",
             f"--benchmark_out={out.name}", "--benchmark_out_format=json"],
            check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        found = json.load(out)["benchmarks"]
    times = {}
    for one in found:
        if one.get("error_occurred"):
            raise SystemExit(f"{one['name']}: {one['error_message']}")
        if one["run_type"] == "iteration":
            times.setdefault(one["run_name"], []).append(one["real_time"])
    return {name: min(values) for name, values in times.items()}


def shown(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def verdict(met, goal):
    return f"{goal}{'' if met else '  MISSED'}"


def comparison_rows(times):
    table = {}
    for name, least in times.items():
        what, who, *size = name.split("/")
        if what != "grow":
            table.setdefault((what, "/".join(size)), {})[who] = least
    for (what, size), by in sorted(table.items()):
        own, scan = by.pop("orvanta"), by.pop("newline scan", None)
        other_case = by.pop("other letter case", None)
        ratios = {who: least / own for who, least in by.items()}
        notes = [f"{who} x{ratio:.3g}" for who, ratio in sorted(ratios.items(), key=lambda p: p[1])]
        goals = []
        if ratios:
            goal = PEER_GOALS.get((what, size), 1)
            goals.append(verdict(min(ratios.values()) >= goal, f"x{goal}"))
        if scan:
            notes.append(f"newline scan: {scan / own:.2f}")
        if size in SCAN_GOALS and scan:
            goals.append(verdict(scan / own >= SCAN_GOALS[size], f"scan {SCAN_GOALS[size]}"))
        if other_case:
            notes.append(f"other letter case costs x{other_case / own:.2f}")
            goals.append(verdict(other_case / own <= OTHER_CASE_GOAL, f"case x{OTHER_CASE_GOAL}"))
        if (what, size) == ("look up", "2.6 KB"):
            goals.append(verdict(own <= LOOK_UP_NANOSECONDS, f"{LOOK_UP_NANOSECONDS} ns"))
        yield what, size, shown(own), ", ".join(notes), ", ".join(goals)


def growth_row(what, by, goal):
    counts = sorted(by)
    exponent = math.log(by[counts[-1]] / by[counts[0]]) / math.log(counts[-1] / counts[0])
    return ("growth", what, " ".join(shown(by[count]) for count in counts),
            f"exponent {exponent:.2f}", verdict(exponent <= goal, goal))


def growth_rows(times):
    shapes = {}
    for name, least in times.items():
        if name.startswith("grow/"):
            _, shape, count = name.split("/")
            shapes.setdefault(shape, {})[int(count)] = least
    for shape, by in shapes.items():
        yield growth_row(shape, by, KEYS_GROWTH_GOAL if "one section" in shape else GROWTH_GOAL)


def adapter_machine(count):
    adapters = [{"index": i, "setting_id": f"{{{i}}}", "pnp_device_id": f"PCI\\{i}",
                 "location_information": f"PCI bus {i}, device 0, function 0",
                 "mac_address": f"02:00:00:00:{i >> 8:02X}:{i & 255:02X}"} for i in range(count)]
    return json.dumps({"schema": 1, "adapters": adapters})


def adapter_file(count):
    return "".join(f"[NicEntry{i}]\nPCIBus={i}\nPCIDevice=0\nPCIFunction=0\nDHCP=True\n"
                   for i in range(count))


def typical_file(number):
    return (f"[Networking]\nComputerName=PC-{number:05}\n[TCP/IP]\nMACAddress=0200{number:08X}\n"
            f"DHCP=False\nAddress=10.{number >> 16}.{number >> 8 & 255}.{number & 255}\n"
            "Netmask=255.0.0.0\nGateway=10.255.255.254\nSetDNSInfo=True\nDNS-Server-Count=2\n"
            "DNS-Server0=10.255.0.1\nDNS-Server1=10.255.0.2\nDNS-SuffixSearchOrder=corp.example\n")


def run_tool(command, repetitions):
    """The least wall and processor times of a command in nanoseconds, and its peak memory in MB."""
    walls, processors = [], []
    for _ in range(repetitions):
        start = time.perf_counter_ns()
        with subprocess.Popen(command, stdout=subprocess.DEVNULL) as process:
            usage = os.wait4(process.pid, 0)[2]
            process.returncode = 0
        walls.append(time.perf_counter_ns() - start)
        processors.append((usage.ru_utime + usage.ru_stime) * 1e9)
    # Measured by a small program, since the peak of a child starts with that of its parent.
    told = subprocess.run(["/usr/bin/time", "--format=%M", *command], stdout=subprocess.DEVNULL,
                          stderr=subprocess.PIPE, text=True, check=False)
    return min(walls), min(processors), int(told.stderr.split()[-1]) / 1024


def tool_rows(build, repetitions):
    tool = build.resolve() / "orvanta-config"
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "pc.cfg").write_text(typical_file(1))
        wall, processor, memory = run_tool([tool, "plan", folder / "pc.cfg"], repetitions)
        yield ("plan", "", shown(wall), f"processor {shown(processor)}, {memory:.3g} MB",
               ", ".join([verdict(wall <= 5e6, "5 ms"), verdict(memory <= 10, "10 MB")]))

        plans = {}
        for count in (100, 1000):
            (folder / "many.json").write_text(adapter_machine(count))
            (folder / "many.cfg").write_text(adapter_file(count))
            plans[count] = run_tool(
                [tool, "plan", folder / "many.cfg", "--machine", folder / "many.json"], repetitions)[0]
        yield growth_row("plan of adapters", plans, GROWTH_GOAL)

        (folder / "fleet").mkdir()
        for number in range(FILES):
            (folder / f"fleet/pc{number}.cfg").write_text(typical_file(number))
        wall, processor, memory = run_tool([tool, "check", folder / "fleet"], 3)
        yield ("check", f"{FILES} files", shown(wall),
               f"processor {shown(processor)}, {memory:.3g} MB", verdict(processor <= 2e9, "2 s"))

        (folder / "agent.log").write_text(LOG * (100_000_000 // len(LOG)))
        wall, processor, memory = run_tool([tool, "explain", folder / "agent.log"], 3)
        yield ("explain", "100 MB", shown(wall), f"processor {shown(processor)}, {memory:.3g} MB",
               verdict(wall <= 1e9, "1 s"))

        memories = []
        for count in (FILES // 10, FILES):
            (folder / "pcs.csv").write_text("file,computer_name\n" + "".join(
                f"fleet/pc{number}.cfg,PC-{number:05}\n" for number in range(count)))
            wall, processor, memory = run_tool([tool, "fleet", folder / "pcs.csv"], 1)
            memories.append(memory)
        row = (memories[1] - memories[0]) * 2**20 / (FILES - FILES // 10)
        yield ("fleet", f"{FILES} rows", shown(wall),
               f"processor {shown(processor)}, {memory:.3g} MB, {row:.0f} bytes a row",
               ", ".join([verdict(processor <= 1e10, "10 s"), verdict(row <= 500, "500 bytes")]))


def plugin_rows(folder):
    for plugin in folder.glob("*.dll"):
        size = plugin.stat().st_size
        yield "plug-in", "", f"{size / 2**20:.2g} MB", "", verdict(size <= 2**20, "1 MB")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--repetitions", type=int, default=15)
    build, repetitions = vars(parser.parse_args()).values()
    # The trees have a process of their own: otherwise the place of their nodes depends on the files
    # that were loaded and dropped before.
    times = (run_benchmarks(build, repetitions, "^tree")
             | run_benchmarks(build, repetitions, "-^tree"))
    rows = [("what", "size", "ours", "times ours", "goal"), *comparison_rows(times),
            *growth_rows(times), *tool_rows(build, repetitions),
            *plugin_rows(build.parent / "windows")]
    widths = [max(len(str(cell)) for cell in column) for column in zip(*rows)]
    for row in rows:
        print("  ".join(str(cell).ljust(width) for cell, width in zip(row, widths)).rstrip())


if __name__ == "__main__":
    main()
