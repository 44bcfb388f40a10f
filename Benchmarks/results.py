"""Loads the results of a run of the benchmarks, as bench.sh keeps them."""

import json
import pathlib
import statistics


def load(folder, names):
    """Returns the benchmarks in the files that match `names`, each with the median of every figure."""
    runs = {}
    for path in pathlib.Path(folder).glob(names + ".json"):
        for run in json.loads(path.read_text())["benchmarks"]:
            if run["run_type"] == "iteration":
                if run.get("error_occurred"):
                    raise SystemExit(f"{run['name']}: {run['error_message']}")
                runs.setdefault(run["run_name"], []).append(run)
    return {benchmark: medians(repetitions) for benchmark, repetitions in runs.items()}


def medians(repetitions):
    figures = {}
    for key, value in repetitions[0].items():
        is_figure = isinstance(value, (int, float))
        figures[key] = statistics.median(run[key] for run in repetitions) if is_figure else value
    return figures


def reading(folder, names="reading-*"):
    """Returns the figures for each reader and number of files, with the time in ns per file."""
    readers = {}
    for benchmark, figures in load(folder, names).items():
        figures["nsPerFile"] = figures["real_time"] * 1000 / figures["files"]
        readers.setdefault(benchmark.split("/")[1], {})[int(figures["files"])] = figures
    return readers
