"""plot.py FOLDER: plots the results of bench.sh in FOLDER as SVG: ns per file by number of files."""

import math
import sys

import results

READERS = {"library": ("(a) library", "#0b6e99"), "hand": ("(c) by hand", "#5a5a5a"), "nlohmann": ("(d) nlohmann", "#b4541a")}
WIDTH, HEIGHT = 720, 420
LEFT, RIGHT, TOP, BOTTOM = 80, 140, 30, 60


def scale(value, low, high, start, end):
    """Returns the position of a value on a logarithmic axis."""
    share = (math.log10(value) - math.log10(low)) / (math.log10(high) - math.log10(low))
    return start + share * (end - start)


def text(x, y, words, anchor="middle", colour="#222"):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" fill="{colour}">{words}</text>'


def line(points, colour, width):
    path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
    return f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="{width}"/>'


def draw(readers):
    sizes = sorted(readers["library"])
    low, high = 1_000, 100_000

    def place(size, time):
        across = scale(size, sizes[0], sizes[-1], LEFT, WIDTH - RIGHT) if len(sizes) > 1 else LEFT
        return across, scale(time, low, high, HEIGHT - BOTTOM, TOP)

    parts = []
    for time in (1_000, 2_000, 5_000, 10_000, 20_000, 50_000, 100_000):
        _, y = place(sizes[0], time)
        parts += [line([(LEFT, y), (WIDTH - RIGHT, y)], "#ddd", 1), text(LEFT - 8, y + 4, f"{time:,}", "end")]
    for size in sizes:
        parts.append(text(place(size, low)[0], HEIGHT - BOTTOM + 20, f"{size:,}"))
    for reader, (label, colour) in READERS.items():
        points = [place(size, readers[reader][size]["nsPerFile"]) for size in sizes]
        parts.append(line(points, colour, 2))
        parts += [f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3.5" fill="{colour}"/>' for x, y in points]
        parts.append(text(points[-1][0] + 10, points[-1][1] + 4, label, "start", colour))
    parts.append(text((LEFT + WIDTH - RIGHT) / 2, HEIGHT - 12, "files in the assembly"))
    parts.append(text(LEFT, 18, "ns per file, from the body to the records", "start"))
    return parts


def main():
    print(f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" font-family="sans-serif" font-size="13">')
    print('<rect width="100%" height="100%" fill="white"/>')
    print("\n".join(draw(results.reading(sys.argv[1]))))
    print("</svg>")


if __name__ == "__main__":
    main()
