"""Draws how fast the contenders are, as an SVG."""
import math

WIDTH = 900
LEFT, RIGHT = 58, 16
PANEL_HEIGHT = 250
PANEL_STEP = 354
TOP = 70
LOWEST = 1 / 8  # a bar that would reach below ends here, and says where it would have ended

# Okabe and Ito's colours, which most eyes can tell apart; kvt_str has the strongest.
STYLE = """
  text { font-family: system-ui, "DejaVu Sans", Helvetica, Arial, sans-serif; fill: #24292f }
  .card { fill: #ffffff; stroke: #d0d7de }
  .panel { font-size: 15px; font-weight: 600 }
  .group { font-size: 13px; text-anchor: middle }
  .tick { font-size: 11px; text-anchor: end; fill: #57606a }
  .value { font-size: 12px; font-weight: 600; text-anchor: middle; fill: #b34700 }
  .beyond { font-size: 10px; text-anchor: middle; fill: #57606a }
  .legend, .foremost { font-size: 12px }
  .foremost { font-weight: 700 }
  .grid { stroke: #d8dee4; stroke-width: 1 }
  .one { stroke: #24292f; stroke-width: 1.5 }
  .goal { stroke: #24292f; stroke-width: 2; stroke-dasharray: 3 2 }
  @media (prefers-color-scheme: dark) {
    text { fill: #e6edf3 }
    .card { fill: #0d1117; stroke: #30363d }
    .tick, .beyond { fill: #9198a1 }
    .value { fill: #ff9d5c }
    .grid { stroke: #30363d }
    .one, .goal { stroke: #e6edf3 }
  }
"""
COLOURS = ["#d55e00", "#0072b2", "#56b4e9", "#cc79a7", "#009e73", "#8fbc5a", "#8c959f"]


def _factor(value):
    return f"{value:.0f}x" if value >= 9.95 else f"{value:.1f}x"


def _text(kind, x, y, text):
    return f'<text class="{kind}" x="{x:.1f}" y="{y:.1f}">{text}</text>'


def _level(kind, left, right, y):
    return f'<line class="{kind}" x1="{left:.1f}" x2="{right:.1f}" y1="{y:.1f}" y2="{y:.1f}"/>'


def _bar(left, width, top, bottom, colour):
    return (
        f'<rect x="{left:.1f}" y="{top:.1f}" width="{width:.1f}" '
        f'height="{max(bottom - top, 1):.1f}" fill="{colour}"/>'
    )


class _Panel:
    """A set of bars. `bars` has, by workload, the speeds by contender, as many times that of the
    one that all are compared with; `limits` are the ends of the scale."""

    def __init__(self, title, bars, goals, limits, top):
        self.title, self.bars, self.goals, self.top = title, bars, goals, top
        self.low, self.high = limits

    def y(self, speed):
        """The place of a speed, on a scale by its logarithm."""
        share = math.log(max(speed, self.low) / self.low) / math.log(self.high / self.low)
        return self.top + PANEL_HEIGHT * (1 - share)

    def draw(self, colours):
        yield _text("panel", LEFT, self.top - 14, self.title)
        for power in range(-3, 4):
            for tick in (10**power, 2 * 10**power, 5 * 10**power):
                if self.low <= tick <= self.high:
                    yield _level("grid", LEFT, WIDTH - RIGHT, self.y(tick))
                    yield _text("tick", LEFT - 8, self.y(tick) + 4, f"{tick:g}x")
        step = (WIDTH - LEFT - RIGHT) / len(self.bars)
        for place, (workload, group) in enumerate(self.bars.items()):
            yield from self._group(workload, group, colours, LEFT + place * step, step)
        yield _level("one", LEFT, WIDTH - RIGHT, self.y(1))

    def _group(self, workload, group, colours, left, step):
        width = min(20.0, (step - 24) / len(group))
        x = left + (step - width * len(group)) / 2
        goal, foremost = self.goals[workload], next(iter(group))
        for contender, speed in group.items():
            top, bottom = sorted((self.y(speed), self.y(1)))
            yield _bar(x, width - 2, top, bottom, colours[contender])
            if speed < self.low:
                yield _text("beyond", x + width / 2 - 1, bottom + 11, f"1/{1 / speed:.0f}")
            if contender == foremost:
                yield _level("goal", x - 4, x + width + 2, self.y(goal))
            x += width
        middle, foot = left + step / 2, self.top + PANEL_HEIGHT
        yield _text("group", middle, foot + 30, workload)
        yield _text("value", middle, foot + 47, f"{_factor(group[foremost])}, goal {goal:g}x")


def _legend(colours, y):
    x = LEFT
    for contender, colour in colours.items():
        width = 32 + 7 * len(contender)
        if x + width > WIDTH - RIGHT:
            x, y = LEFT, y + 20
        yield _bar(x, 12, y - 10, y + 2, colour)
        kind = "foremost" if contender == next(iter(colours)) else "legend"
        yield _text(kind, x + 17, y, contender)
        x += width
    yield _level("goal", x, x + 18, y - 4)
    yield _text("legend", x + 23, y, f"goal of {next(iter(colours))}")


def draw(contenders, panels):
    """The plot of panels, each with its title, its bars and its goals by workload. The first
    contender is the one that it is about."""
    colours = dict(zip(contenders, COLOURS))
    speeds = [speed for _, bars, _ in panels for group in bars.values() for speed in group.values()]
    goals = [goal for _, _, panel_goals in panels for goal in panel_goals.values()]
    limits = max(min(speeds + [0.5]), LOWEST), 1.2 * max(speeds + goals)
    height = TOP + len(panels) * PANEL_STEP
    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" '
        f'width="{WIDTH}" height="{height}" role="img">',
        f"<title>{'; '.join(title for title, _, _ in panels)}</title>",
        f"<style>{STYLE}</style>",
        f'<rect class="card" x="0.5" y="0.5" width="{WIDTH - 1}" height="{height - 1}" rx="8"/>',
        *_legend(colours, 28),
    ]
    for place, (title, bars, panel_goals) in enumerate(panels):
        top = TOP + 30 + place * PANEL_STEP
        lines += _Panel(title, bars, panel_goals, limits, top).draw(colours)
    return "\n".join(lines) + "\n</svg>\n"
