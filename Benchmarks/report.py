"""report.py FOLDER: prints the results of bench.sh in FOLDER as tables."""

import sys

import results

READERS = {
    "library": "(a) library",
    "parse": "(b) parse only",
    "hand": "(c) by hand",
    "nlohmann": "(d) nlohmann",
    "odd": "(e) library, odd titles",
}


def print_rows(title, header, rows):
    """Prints aligned columns: the first flush left, the others flush right."""
    cells = [header] + [[str(cell) for cell in row] for row in rows]
    widths = [max(len(row[column]) for row in cells) for column in range(len(header))]
    print(title)
    for row in cells:
        aligned = [cell.rjust(width) for cell, width in zip(row, widths)]
        aligned[0] = row[0].ljust(widths[0])
        print(("  " + "  ".join(aligned)).rstrip())
    print()


def reading_row(reader, files, figures, by_hand):
    return [
        READERS[reader],
        f"{files:,}",
        f"{figures['nsPerFile']:,.0f}",
        f"{figures['bodyBytes'] / files / figures['nsPerFile'] * 1000:,.0f}",
        f"{figures['nsPerFile'] / by_hand['nsPerFile']:.2f}",
        f"{figures['allocations'] / files:.2f}",
        f"{figures['peakOverBody']:.2f}",
    ]


def print_reading(folder):
    header = ["reader", "files", "ns/file", "MB/s", "vs (c)", "allocations/file", "peak memory/body"]
    readers = results.reading(folder)
    sizes = sorted(readers["library"])
    rows = [reading_row(reader, size, readers[reader][size], readers["hand"][size]) for size in sizes for reader in READERS]
    print_rows("From the body to the records", header, rows)

    threaded = results.reading(folder, "threaded-*")
    rows = [
        reading_row(reader, size, figures, threaded["hand"][size])
        for reader, by_size in sorted(threaded.items(), reverse=True)
        for size, figures in by_size.items()
    ]
    print_rows("The same in a process that has a second thread", header, rows)


def growth(by_size, size):
    before = by_size.get(size // 10)
    return f"{by_size[size]['real_time'] / before['real_time']:.1f}" if before else ""


def print_queries(folder):
    queries = {}
    in_order = sorted(results.load(folder, "queries").items(), key=lambda run: run[1]["family_index"])
    for benchmark, figures in in_order:
        queries.setdefault(benchmark.split("/")[1], {})[int(figures["files"])] = figures
    rows = []
    for query, by_size in queries.items():
        size = max(by_size)
        figures = by_size[size]
        rows.append(
            [
                query,
                f"{size:,}",
                f"{figures['real_time']:,.0f}",
                growth(by_size, size // 10) if size > 1000 else "",
                growth(by_size, size),
                figures["label"],
                f"{figures['allocations']:,.0f}",
                f"{figures['allocationsOfResult']:,.0f}",
            ]
        )
    header = ["query", "files", "ns", "1,000 vs 100", "10,000 vs 1,000", "grows with", "allocations", "to copy the result"]
    print_rows("Queries, and how many times longer each takes with ten times the files", header, rows)


def print_client(folder):
    figures = results.load(folder, "client")
    times = {name.split("/real_time")[0].split("/iterations")[0]: run["real_time"] for name, run in figures.items()}
    bare = 1e6 / times["client/bare/sequential"]
    sequential = 1e6 / times["client/sequential"]
    at_once = 1000 * 1e6 / times["client/thousandAtOnce"]
    rows = [
        ["bare libcurl, one after another", f"{bare:,.0f} requests/s", "1.00"],
        ["CurlHTTPClient, one after another", f"{sequential:,.0f} requests/s", f"{sequential / bare:.2f}"],
        ["CurlHTTPClient, 1,000 at once", f"{at_once:,.0f} requests/s", f"{at_once / bare:.2f}"],
        ["30 MiB: from the last byte to the callback", f"{times['client/lastByteToCallback'] / 1000:.2f} ms", ""],
    ]
    print_rows("The HTTP client", ["requests", "", "vs bare"], rows)


def main():
    folder = sys.argv[1]
    print_reading(folder)
    print_queries(folder)
    print_client(folder)


if __name__ == "__main__":
    main()
