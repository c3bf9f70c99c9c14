#!/usr/bin/env python3
"""Makes the table of scripts/bench from the results of one run.

Reads the Google Benchmark JSON files and memory.jsonl in the results
folder, prints the table and, with --write FILE, replaces the part of FILE
between the markers <!-- bench:begin --> and <!-- bench:end --> with it.
Each figure is the median of the run's repetitions (or the one value of a
quick run)."""

import argparse
import datetime
import json
import os
import pathlib
import platform
import re
import sys

BEGIN = "<!-- bench:begin -->"
END = "<!-- bench:end -->"
TO_US = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}


def load(folder):
    """name -> entry (times in microseconds), medians where repeated."""
    entries = {}
    for file in sorted(folder.glob("*.json")):
        data = json.loads(file.read_text())
        for b in data["benchmarks"]:
            if b.get("error_occurred"):
                raise SystemExit(f"{file.name}: {b['name']}: {b.get('error_message')}")
            if b.get("run_type") == "aggregate" and b.get("aggregate_name") != "median":
                continue
            name = b.get("run_name", b["name"])
            name = re.sub(r"/manual_time$", "", name)
            scale = TO_US[b.get("time_unit", "ns")]
            entry = dict(b)
            entry["us"] = b["real_time"] * scale
            entry["cpu_us"] = b["cpu_time"] * scale
            entries[name] = entry
    return entries


def memory(folder):
    rows = []
    path = folder / "memory.jsonl"
    if path.exists():
        rows = [json.loads(line) for line in path.read_text().splitlines() if line.strip()]
    return rows


def fmt_time(us):
    if us >= 1e3:
        return f"{us / 1e3:.2f} ms"
    return f"{us:.1f} µs"


def machine(folder):
    cpu = "unknown"
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            cpu = line.split(":", 1)[1].strip()
            break
    mem_kib = 0
    for line in pathlib.Path("/proc/meminfo").read_text().splitlines():
        if line.startswith("MemTotal:"):
            mem_kib = int(line.split()[1])
    loads = []
    for which in ("load-before", "load-after"):
        path = folder / which
        if path.exists():
            loads.append(" ".join(path.read_text().split()[:3]))
    return cpu, os.cpu_count(), mem_kib / 1024 / 1024, loads


def table(folder):
    e = load(folder)
    mem = memory(folder)
    rows = []

    def row(what, product, floor, ratio, goal, verdict=None):
        if verdict is None:
            verdict = ""
        rows.append((what, product, floor, ratio, goal, verdict))

    def check(value, limit):
        return "within" if value <= limit else "OVER"

    families = sorted({n.split("/")[1] for n in e if n.startswith("BM_StartUp/")})
    for f in families:
        p, fl = e[f"BM_StartUp/{f}"], e[f"BM_StartUpFloor/{f}"]
        r = p["us"] / fl["us"]
        row(f"start-up {f} ({p['label']}): IDtmActiveXControl_Init less the BL's composition "
            f"({p['bl_composition_ms']:.2f} ms apart)",
            fmt_time(p["us"]), fmt_time(fl["us"]), f"{r:.2f}×", "≤ 1.5×", check(r, 1.5))
    for f in families:
        for size, text in (("smallest", "fewest items"), ("near20", "about 20 items"),
                           ("largest", "largest group")):
            if f"BM_PageReplies/{f}/{size}" not in e:
                continue
            p, fl = e[f"BM_PageReplies/{f}/{size}"], e[f"BM_PageRepliesFloor/{f}/{size}"]
            r = p["us"] / fl["us"]
            row(f"reply {f}, {text}: {p['label'].split()[-1]} ({p['items']:.0f} items, "
                f"{p['replies']:.0f} replies) to the page",
                fmt_time(p["us"]), fmt_time(fl["us"]), f"{r:.2f}×", "≤ 2×", check(r, 2.0))
    for f in families:
        if f"BM_UploadAll/{f}" not in e:
            continue
        p, fl = e[f"BM_UploadAll/{f}"], e[f"BM_UploadAllFloor/{f}"]
        replies = p["replies"]
        r = p["us"] / fl["us"]
        whole = p["whole_ms"] * 1e3
        row(f"upload all {f} ({p['label']}, {replies:.0f} replies): the control's time, "
            f"{fmt_time(p['us'] / replies)} a reply", fmt_time(p["us"]), fmt_time(fl["us"]),
            f"{r:.2f}×", "")
        row(f"upload all {f}: the whole chain (click, BL and control)", fmt_time(whole),
            fmt_time(fl["us"]), f"{whole / fl['us']:.2f}×", "")
    if "BM_MonitoringReplyToChartAndLog" in e:
        p, fl = e["BM_MonitoringReplyToChartAndLog"], e["BM_BareParseAndValidation"]
        r = p["us"] / fl["us"]
        row("monitoring reply to the chart and the log", fmt_time(p["us"]), fmt_time(fl["us"]),
            f"{r:.2f}×", "≤ 2×, < 0.5 ms", check(r, 2.0) if p["us"] < 500 else "OVER")
        if "BM_LogLineOpenAppendClose" in e:
            log = e["BM_LogLineOpenAppendClose"]
            floor = fl["us"] + log["us"]
            row(f"monitoring reply against the parse and validation and the log line's own "
                f"open, append and close ({fmt_time(log['us'])})", fmt_time(p["us"]),
                fmt_time(floor), f"{p['us'] / floor:.2f}×", "")
    if "BM_TenMinutesAt100Hz/iterations:1" in e:
        t = e["BM_TenMinutesAt100Hz/iterations:1"]
        row(f"ten minutes at 100 Hz (60,000 replies, {t['points']:.0f} chart points at the end): "
            "resident growth after the first thousand", f"{t['rss_growth_KiB']:.0f} KiB", "", "",
            "≤ 2048 KiB", check(t["rss_growth_KiB"], 2048))
    if "BM_TypedValueToConfirmationRow" in e:
        p = e["BM_TypedValueToConfirmationRow"]
        row("change road: a typed value to its confirmation row (KT520_7)", fmt_time(p["us"]),
            "", "", "")
    key = next((n for n in e if n.startswith("BM_ConfirmedRowsToRequests")), None)
    if key:
        p = e[key]
        row(f"change road: {p['rows']:.0f} confirmed rows ({p['label']}, all it has) to "
            f"{p['requests']:.0f} requests; for 100 rows at the same rate "
            f"{fmt_time(p['us'] * 100 / p['rows'])}", fmt_time(p["us"]), "", "", "")
    if "BM_LanguageChange" in e:
        p = e["BM_LanguageChange"]
        row(f"language change (TranslateForm), KT520_7, {p['controls']:.0f} controls",
            fmt_time(p["us"]), "", "", "")
    if "BM_UnitSystemChange" in e:
        row("unit system change (RefreshAllUnits), KT520_7", fmt_time(e["BM_UnitSystemChange"]["us"]),
            "", "", "")
    for what, name in (("start-up", "BM_ScaleStartUp"), ("upload all", "BM_ScaleUploadAll"),
                       ("language change", "BM_ScaleLanguageChange")):
        one, ten = e.get(f"{name}/1"), e.get(f"{name}/10")
        if one and ten:
            g = ten["us"] / one["us"]
            sizes = ""
            if "parameters" in ten:
                sizes = (f" ({one['parameters']:.0f}→{ten['parameters']:.0f} parameters, "
                         f"{one['groups']:.0f}→{ten['groups']:.0f} groups, "
                         f"{one['pages']:.0f}→{ten['pages']:.0f} pages, "
                         f"{one['tree_nodes']:.0f}→{ten['tree_nodes']:.0f} tree nodes)")
            row(f"scale 10×: {what}{sizes}", fmt_time(ten["us"]), fmt_time(one["us"]), f"{g:.2f}×",
                "≤ 11×", check(g, 11.0))
    for m in mem:
        if m["mode"] == "stall":
            what = (f"window at 100 Hz monitoring in real time ({m['key']}, {m['seconds']} s, "
                    f"{m['replies']} replies besides the BL's cycle, the log on): the event "
                    f"loop's longest stall")
            row(f"{what}, in real time (99% of the turns within {m['p99_ms']:.1f} ms)",
                f"{m['longest_ms']:.1f} ms", "", "", "< 50 ms", check(m["longest_ms"], 50))
            row(f"{what}, in the window thread's processor time (99% of the turns within "
                f"{m['p99_cpu_ms']:.1f} ms)", f"{m['longest_cpu_ms']:.1f} ms", "", "", "< 50 ms",
                check(m["longest_cpu_ms"], 50))
        elif m["mode"] == "replies":
            row(f"resident memory over {m['replies']} replies ({m['key']}, {m['cycles']} cycles "
                "of upload all and a minute of monitoring): growth after the first thousand",
                f"{m['growth_kib']} KiB", "", "", "≤ 2048 KiB", check(m["growth_kib"], 2048))
        else:
            limit = 150 if m["mode"] == "window" else 60
            mib = m["rss_kib"] / 1024
            row(f"resident memory, {m['mode']}, {m['key']} after upload all", f"{mib:.1f} MiB", "",
                "", f"< {limit} MB", check(mib, limit))
    return rows


def render(folder, rows):
    cpu, cores, mem_gib, loads = machine(folder)
    today = datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d %H:%M UTC")
    lines = [
        f"Measured {today} on {cpu}, {cores} cores, {mem_gib:.1f} GiB, {platform.system()} "
        f"{platform.release()}; load average (1, 5, 15 min) before the run {loads[0] if loads else '?'}, "
        f"after {loads[1] if len(loads) > 1 else '?'}. Every figure below comes from this one run "
        "(the median of its repetitions); a ratio sets two figures of the same run side by side.",
        "",
        "| what | product | floor / 1× | ratio | goal | |",
        "|---|---|---|---|---|---|",
    ]
    for r in rows:
        lines.append("| " + " | ".join(r) + " |")
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("results", type=pathlib.Path)
    parser.add_argument("--write", type=pathlib.Path)
    args = parser.parse_args()
    text = render(args.results, table(args.results))
    print(text)
    if args.write:
        doc = args.write.read_text()
        if BEGIN not in doc or END not in doc:
            raise SystemExit(f"{args.write}: no {BEGIN} ... {END} markers")
        head, rest = doc.split(BEGIN, 1)
        _, tail = rest.split(END, 1)
        args.write.write_text(head + BEGIN + "\n" + text + END + tail)
    return 0


if __name__ == "__main__":
    sys.exit(main())
