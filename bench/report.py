#!/usr/bin/env python3
"""Measures everything in one run and prints it as one table: report.py BUILD [--repetitions N]

Times are minima over the interleaved repetitions: on a busy machine they drift least. A ratio above 1
means that this project is the faster one.
"""

import argparse
import json
import math
import pathlib
import subprocess
import tempfile

OWN = "orvanta"
LIMITS = ("newline scan", "copy", "open, read, close")
# (what, size): the least number of times that the fastest peer takes; the source is the team's goals.
PEER_GOALS = {
    ("load", "2.6 KB"): 8, ("load", "1 MB"): 12, ("load", "50 MB"): 10, ("load", "200,000 keys"): 5,
    ("load file", "2.6 KB"): 2.8,
    ("look up", "2.6 KB"): 1.7, ("look up", "1 MB"): 3, ("look up", "50 MB"): 1.5,
    ("tree depth-first", ""): 1, ("tree breadth-first", ""): 1,
}
SCAN_GOALS = {"1 MB": 0.35, "50 MB": 0.25}
GROWTH_GOALS = {"keys in one section": 1.3}
ADAPTERS = 1000
FILES = 10_000


def run_benchmarks(build, repetitions):
    """The least time in nanoseconds by the benchmark's name. The trees have a process of their own: where
    their nodes lie would else depend on the files that were loaded and dropped before."""
    return run_some(build, repetitions, "^tree") | run_some(build, repetitions, "-^tree")


def run_some(build, repetitions, which):
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        subprocess.run(
            [build / "bench/config_bench", f"--benchmark_filter={which}",
             f"--benchmark_repetitions={repetitions}",
             "--benchmark_enable_random_interleaving=true", "--benchmark_min_time=0.01",
             f"--benchmark_out={out.name}", "--benchmark_out_format=json"],
            check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        found = json.load(out)["benchmarks"]
    units = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    times = {}
    for one in found:
        if one["run_type"] != "iteration":
            continue
        if one.get("error_occurred"):
            raise SystemExit(f"{one['name']}: {one['error_message']}")
        time = one["real_time"] * units[one["time_unit"]]
        times[one["run_name"]] = min(time, times.get(one["run_name"], math.inf))
    return times


def shown(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def verdict(met, goal):
    return f"{goal}{'' if met else '  MISSED'}"


def comparison_rows(times):
    table = {}
    for name, time in times.items():
        what, who, *size = name.split("/")
        if what != "grow":
            table.setdefault((what, "/".join(size)), {})[who] = time
    for (what, size), by in table.items():
        if OWN not in by:
            continue
        own = by[OWN]
        peers = {who: time / own for who, time in by.items()
                 if who != OWN and who not in LIMITS and who != "other letter case"}
        notes, goals = [], []
        if peers:
            best = min(peers, key=peers.get)
            notes += [f"{who} x{ratio:.3g}" for who, ratio in sorted(peers.items(), key=lambda p: p[1])]
            goal = PEER_GOALS.get((what, size if "tree" not in what else ""))
            if goal:
                goals.append(verdict(peers[best] >= goal, f"x{goal}"))
        notes += [f"{limit}: {by[limit] / own:.2f}" for limit in LIMITS if limit in by]
        if what == "load" and size in SCAN_GOALS:
            goals.append(verdict(by["newline scan"] / own >= SCAN_GOALS[size], f"scan {SCAN_GOALS[size]}"))
        if "open, read, close" in by:
            goals.append(verdict(own / by["open, read, close"] <= 1.5, "open at least 0.67"))
        if "other letter case" in by:
            cost = by["other letter case"] / own
            notes.append(f"other letter case costs x{cost:.2f}")
            goals.append(verdict(cost <= 1.35, "case x1.35"))
        yield what, size, shown(own), ", ".join(notes), ", ".join(goals)


def growth_rows(times):
    shapes = {}
    for name, time in times.items():
        if name.startswith("grow/"):
            _, shape, count = name.split("/")
            shapes.setdefault(shape, {})[int(count)] = time
    for shape, by in shapes.items():
        counts = sorted(by)
        exponent = math.log(by[counts[-1]] / by[counts[0]]) / math.log(counts[-1] / counts[0])
        goal = GROWTH_GOALS.get(shape, 1.12)
        yield ("growth", shape, " ".join(shown(by[count]) for count in counts),
               f"exponent {exponent:.2f} from 1x to 100x", verdict(exponent <= goal, goal))


def adapter_machine():
    adapters = [{"index": i, "setting_id": f"{{{i}}}", "pnp_device_id": f"PCI\\{i}",
                 "location_information": f"PCI bus {i}, device 0, function 0",
                 "mac_address": f"02:00:00:00:{i >> 8:02X}:{i & 255:02X}"} for i in range(ADAPTERS)]
    return json.dumps({"schema": 1, "adapters": adapters})


def adapter_file():
    return "".join(f"[NicEntry{i}]\nPCIBus={i}\nPCIDevice=0\nPCIFunction=0\nDHCP=True\n"
                   for i in range(ADAPTERS))


def typical_file(number):
    return (f"[Networking]\nComputerName=PC-{number:05}\n[TCP/IP]\nMACAddress=0200{number:08X}\n"
            f"DHCP=False\nAddress=10.{number >> 16}.{number >> 8 & 255}.{number & 255}\n"
            "Netmask=255.0.0.0\nGateway=10.255.255.254\nSetDNSInfo=True\nDNS-Server-Count=2\n"
            "DNS-Server0=10.255.0.1\nDNS-Server1=10.255.0.2\nDNS-SuffixSearchOrder=corp.example\n")


def peak_megabytes(command):
    """Asked of a small program: the peak of a child begins with that of its parent."""
    told = subprocess.run(["/usr/bin/time", "--format=%M", *command], stdout=subprocess.DEVNULL,
                          stderr=subprocess.PIPE, text=True, check=False)
    return int(told.stderr.split()[-1]) / 1024


def tool_rows(build, repetitions):
    tool = build.resolve() / "orvanta-config"
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        (folder / "pc.cfg").write_text(typical_file(1))
        (folder / "many.json").write_text(adapter_machine())
        (folder / "many.cfg").write_text(adapter_file())
        (folder / "fleet").mkdir()
        for number in range(FILES):
            (folder / f"fleet/pc{number}.cfg").write_text(typical_file(number))
        runs = [
            ("tool: start-up", [tool, "--version"], None),
            ("tool: plan", [tool, "plan", folder / "pc.cfg"], 5),
            (f"tool: plan, {ADAPTERS} adapters",
             [tool, "plan", folder / "many.cfg", "--machine", folder / "many.json"], 50),
            (f"tool: check, {FILES} files", [tool, "check", folder / "fleet"], 2000),
        ]
        for what, command, goal in runs:
            out = folder / "hyperfine.json"
            subprocess.run(
                ["hyperfine", "-N", "-i", "--warmup", "2", "--runs", str(repetitions),
                 "--export-json", out, " ".join(map(str, command))],
                check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            result = json.loads(out.read_text())["results"][0]
            took = result["min"] * 1e3
            processor = (result["user"] + result["system"]) * 1e3
            measured = processor if "check" in what else took
            memory = peak_megabytes(command)
            goals = [verdict(measured <= goal, f"{goal} ms")] if goal else []
            if what == "tool: plan":
                goals.append(verdict(memory <= 10, "10 MB"))
            yield (what, "", f"{took:.3g} ms", f"processor {processor:.3g} ms, {memory:.3g} MB",
                   ", ".join(goals))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--repetitions", type=int, default=15)
    arguments = parser.parse_args()
    times = run_benchmarks(arguments.build, arguments.repetitions)
    rows = [("what", "size", "ours", "times ours / of the limit", "goal"),
            *sorted(comparison_rows(times)), *growth_rows(times),
            *tool_rows(arguments.build, arguments.repetitions)]
    widths = [max(len(str(row[column])) for row in rows) for column in range(5)]
    for row in rows:
        print("  ".join(str(cell).ljust(width) for cell, width in zip(row, widths)).rstrip())


if __name__ == "__main__":
    main()
