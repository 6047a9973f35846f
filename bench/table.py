"""Prints the table of a run from its results; bench/run calls it.

Usage: table.py TRANSFERS TFTP MEDIA WINDOW MICRO
TRANSFERS has lines "bare PLACE RATE", "link PLACE TARGETS RATE INSTALLER_KIB AGENT_KIB" and, with a
switch on the way, "switched" with the same words, "pc CARD RATE" and "announced CARD SECONDS" (rates
in MB/s), TFTP and MEDIA those that bench/tftp/run and bench/media/run describe, WINDOW those that bench/window/window_bench.h describes, MICRO is the JSON of Google Benchmark
with medians. All figures shown are medians, but for those of the longest click.
"""

import json
import os
import statistics
import sys

HEADING = ("what", "value", "beside", "value/beside", "target", "met")


class Transfers:
    def __init__(self, path):
        with open(path, encoding="utf-8") as lines:
            self.rows = [line.split() for line in lines]

    def bare_rate(self, place):
        return statistics.median(float(r[2]) for r in self.rows if r[:2] == ["bare", place])

    def _link(self, place, targets, column):
        chosen = [r for r in self.rows if r[:3] == ["link", place, str(targets)]]
        return statistics.median(float(r[column]) for r in chosen)

    def rate(self, place, targets):
        return self._link(place, targets, 3)

    def switched_rate(self):
        return statistics.median(float(r[3]) for r in self.rows if r[0] == "switched")

    def of_pc(self, what, card):
        return statistics.median(float(r[2]) for r in self.rows if r[:2] == [what, card])

    def per_session(self, column):
        most = self._link("apart", 256, column)
        return (most - self._link("apart", 1, column)) / 255

    def installer_per_session(self):
        return self.per_session(4)

    def agent_per_session(self):
        return self.per_session(5)


class Tftp:
    OWN = "omniset"
    BARE = "bare"
    OTHERS = ("dnsmasq", "tftpd-hpa", "atftpd")

    def __init__(self, path):
        with open(path, encoding="utf-8") as lines:
            self.rows = [line.split() for line in lines]

    def _all(self, server, client, place, column):
        return [float(r[column]) for r in self.rows if r[:3] == [server, client, place]]

    def rates(self, server, client, place):
        return self._all(server, client, place, 3)

    def processor_times(self, server, client, place):
        return self._all(server, client, place, 4)

    def rate(self, *what):
        return statistics.median(self.rates(*what))

    def processor_time(self, *what):
        return statistics.median(self.processor_times(*what))


class Window:
    def __init__(self, path):
        self.values = {}
        with open(path, encoding="utf-8") as lines:
            for line in lines:
                name, value = line.rsplit(maxsplit=1)
                self.values.setdefault(name, []).append(float(value))

    def median(self, name):
        return statistics.median(self.values[name])

    def most(self, name):
        return max(self.values[name])


def row(what, value, unit, beside=None, beside_name="", at_least=None, at_most=None, below=None):
    """`at_least` and `at_most` hold for value/beside, `below` for the value."""
    shown = [what, f"{value:.3g} {unit}", "", "", "", ""]
    if beside is not None:
        shown[2] = f"{beside:.3g} {unit}, {beside_name}"
        shown[3] = f"{value / beside:.2f}"
    if at_least is not None:
        shown[4] = f">= {at_least:.2f}"
        shown[5] = "yes" if value / beside >= at_least else "NO"
    if at_most is not None:
        shown[4] = f"<= {at_most:.2f}"
        shown[5] = "yes" if value / beside <= at_most else "NO"
    if below is not None:
        shown[4] = f"< {below} {unit}"
        shown[5] = "yes" if value < below else "NO"
    return shown


def transfer_rows(t):
    one, some, many = (t.rate("apart", n) for n in (1, 16, 256))
    return [
        row("64 MiB to 1 target, a processor for each side", one, "MB/s", t.bare_rate("apart"),
            "bare exchange", at_least=0.9),
        row("64 MiB to 1 target, one processor for both", t.rate("together", 1), "MB/s",
            t.bare_rate("together"), "bare exchange", at_least=0.9),
        row("16 MiB to 16 targets, all together", some, "MB/s", one, "1 target", at_least=1),
        row("2 MiB to 256 targets, all together", many, "MB/s", some, "16 targets", at_least=1),
        row("installer's memory per added session", t.installer_per_session(), "KiB", below=32),
        row("agent's memory per added target", t.agent_per_session(), "KiB", below=32),
    ]


def pc_rows(t):
    rows = []
    for card in ("virtio-net-pci", "e1000"):
        rows.append(row(f"power-on of a virtual PC to its announcement, {card}",
                        t.of_pc("announced", card), "s"))
    for card in ("virtio-net-pci", "e1000"):
        rows.append(row(f"16 MiB to a virtual PC, {card}", t.of_pc("pc", card), "MB/s",
                        t.switched_rate(), "omniset-target there"))
    return rows


TFTP_CASES = (("own", "together", "own client, one processor for both"),
              ("own", "apart", "own client, a processor for each side"),
              ("curl", "together", "curl, one processor for both"))


def tftp_rows(t):
    rows = []
    for client, place, words in TFTP_CASES:
        where = (client, place)
        own = t.rate(t.OWN, *where)
        fastest = max(t.OTHERS, key=lambda other: t.rate(other, *where))
        rows.append(row(f"TFTP, {words}", own, "MB/s", t.rate(fastest, *where), fastest,
                        at_least=1))
        if client == "own":
            rows.append(row(f"TFTP, {words}", own, "MB/s", t.rate(t.BARE, *where),
                            "bare exchange", at_least=0.9))
    for client, place, words in TFTP_CASES:
        where = (client, place)
        thriftiest = min(t.OTHERS, key=lambda other: t.processor_time(other, *where))
        rows.append(row(f"TFTP server's processor time per MB, {words}",
                        t.processor_time(t.OWN, *where), "ms",
                        t.processor_time(thriftiest, *where), thriftiest))
    return rows


def spread(values):
    return f"{statistics.median(values):.3g} ({min(values):.3g} to {max(values):.3g})"


def tftp_spread_rows(t):
    rows = [("TFTP server", "client", "MB/s", "ms of the server's processor time per MB")]
    for client, place, words in TFTP_CASES:
        for server in (t.OWN, *t.OTHERS, t.BARE):
            rates = t.rates(server, client, place)
            if rates:
                times = t.processor_times(server, client, place)
                rows.append((server, words, spread(rates), spread(times)))
    return rows


def window_rows(w):
    rows = [row("start to visible window", w.median("start omniset"), "ms",
                w.median("start empty"), "empty dialog", at_most=3)]
    listed = int(w.median("listed"))
    for state, doing in (("silent", "silent"), ("announcing", "announcing each second")):
        rows.append(row(f"idle window, {listed} routers {doing}", w.median(f"idle {state} omniset"),
                        "%", w.median(f"idle {state} empty"), "empty dialog", below=2))
    for what, figure in (("a click", w.median), ("the longest click", w.most)):
        quiet = figure("click quiet omniset")
        busy = figure("click installing omniset")
        rows.append(row(f"{what}, nothing installing", quiet, "ms", figure("click quiet empty"),
                        "empty dialog"))
        rows.append(row(f"{what}, 64 targets installing", busy, "ms", quiet,
                        "nothing installing", below=50))
        rows.append(row(f"{what}, 64 targets installing", busy, "ms",
                        figure("click installing empty"), "empty dialog meanwhile"))
    rows.append(row("what these targets are sent meanwhile", w.median("carried"), "MB/s"))
    return rows


def media_rows(path):
    seconds = {}
    with open(path, encoding="utf-8") as lines:
        for who, value in (line.split() for line in lines):
            seconds.setdefault(who, []).append(float(value))

    def rate(who):
        return 64 * 1.048576 / statistics.median(seconds[who])

    rows = []
    for what, own in (("until all is on the medium", "made"), ("read back, too", "checked")):
        rows.append(row(f"a disk with 64 MiB, {what}", rate(own), "MB/s", rate("cp"),
                        "cp and sync to a mounted FAT volume", at_least=0.9))
        rows.append(row(f"a disk with 64 MiB, {what}", rate(own), "MB/s", rate("mcopy"),
                        "mcopy and sync"))
    rows.append(row("a disk with 64 MiB, until all is on the medium", rate("made"), "MB/s",
                    rate("dd"), "writing a file"))
    return rows


def micro_rows(path):
    with open(path, encoding="utf-8") as file:
        benchmarks = json.load(file)["benchmarks"]
    time = {b["run_name"]: b["real_time"] for b in benchmarks if b["aggregate_name"] == "median"}
    rows = [
        row("building a frame", time["BuildFrame"], "ns"),
        row("accepting an acknowledgement", time["AcceptAcknowledgement"], "ns"),
        row("accepting a chunk", time["AcceptChunk"], "ns"),
    ]
    for what, name in (("finding the session of a frame", "FindSession"),
                       ("finding the next deadline", "NextDeadline"),
                       ("a turn of the event loop", "LoopTurn")):
        rows.append(row(f"{what}, 1 session", time[f"{name}/1"], "ns"))
        for count, fewer in ((16, 1), (256, 16), (4096, 256)):
            rows.append(row(f"{what}, {count} sessions", time[f"{name}/{count}"], "ns",
                            time[f"{name}/{fewer}"], f"with {fewer}"))
    scan = time["ScanPackages"]
    rows.append(row("scanning 1,000 packages", scan, "ms", time["readPackages/leading"],
                    "reading their first 4 KiB"))
    rows.append(row("scanning 1,000 packages", scan, "ms", time["readPackages/whole"],
                    "reading them whole"))
    return rows


def print_table(rows):
    widths = [max(len(r[i]) for r in rows) for i in range(len(rows[0]))]
    for number, cells in enumerate(rows):
        print("| " + " | ".join(c.ljust(w) for c, w in zip(cells, widths)) + " |")
        if number == 0:
            print("|" + "|".join("-" * (w + 2) for w in widths) + "|")


def main():
    transfers, tftp, media, window, micro = sys.argv[1:]
    measured = Transfers(transfers)
    served = Tftp(tftp)
    print_table([HEADING] + transfer_rows(measured) + pc_rows(measured) + tftp_rows(served) +
                media_rows(media) + window_rows(Window(window)) + micro_rows(micro))
    print()
    print_table(tftp_spread_rows(served))
    print(f"\nMedians; {os.cpu_count()} processors; 1 MB/s is 1,000,000 bytes of files in a second.")


if __name__ == "__main__":
    main()
