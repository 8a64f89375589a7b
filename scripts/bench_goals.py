"""What each benchmark is to reach: the one table of the goals."""

from dataclasses import dataclass

UNITS = {"ratio": " ×", "ms": " ms", "peak_mb": " MB", "of_inflate": " × inflate's speed",
         "least_of_inflate": " × at the slowest"}


@dataclass(frozen=True)
class Goal:
    """What a figure of a row is to be at most, or at least. A run fails beyond `limit`; without one a miss is only
    told: where the goal is still to be reached, and where only a quiet machine can tell."""

    figure: str  # "ratio", "ms" or what else the benchmark counts
    most: float | None = None
    least: float | None = None
    limit: float | None = None

    def __str__(self):
        word, bound = ("at most", self.most) if self.least is None else ("at least", self.least)
        return f"{word} {bound:.3g}{UNITS.get(self.figure, '')}"

    def is_kept(self, value):
        return value <= self.most if self.least is None else value >= self.least

    def is_over(self, value):
        return self.limit is not None and (value > self.limit if self.least is None else value < self.limit)


# By the benchmark's name, or by its part before the first slash. What no row names has no goal.
GOALS = {
    "search for an icon": [Goal("ratio", most=1.5, limit=1.5)],
    "search for an icon among many": [Goal("ratio", most=1.5, limit=1.5)],
    "image that no theme has": [Goal("ratio", most=1.5, limit=1.5)],
    "mask 180x180, bytes a mask pixel": [Goal("ratio", most=2.5, limit=6)],
    "overlay 180x180": [Goal("ratio", most=3.5, limit=6)],
    "recorded preview": [Goal("ratio", most=1.3, limit=1.3)],
    "what an unrecorded preview pays": [Goal("ratio", most=0.01, limit=0.01)],
    "convert of 10,000 pictures": [Goal("ratio", most=1.3, limit=1.3)],
    "lint of 1,500 icons": [Goal("ratio", most=1.5, limit=1.5)],
    "wholeCatalogOnOneJob": [Goal("ratio", most=1.15)],
    "wholeCatalogOnTwoJobs": [Goal("ratio", most=1 / 1.9)],
    "lzfseRealStreams": [Goal("of_inflate", least=1.1), Goal("least_of_inflate", least=1.0)],
    "lzfseOwnPictures": [Goal("of_inflate", least=1.1), Goal("least_of_inflate", least=1.0)],
    "deepmapColor": [Goal("ratio", most=8)],
    "deepmapGray": [Goal("ratio", most=8)],
    "image of a themed icon": [Goal("ratio", most=1.5)],
    "image of a themed icon/icons:24": [Goal("ratio", most=0.6)],
    "image of a themed icon/icons:120": [Goal("ratio", most=0.6)],
    "alpha of a label": [Goal("ratio", most=1.5)],
    "start-up": [Goal("ms", most=5), Goal("peak_mb", most=8)],
    "preview of the example theme on a phone": [Goal("ratio", most=3), Goal("peak_mb", most=80)],
    "frame again, as it is": [Goal("ratio", most=1.5)],
    "frame again, after a change of themes": [Goal("ratio", most=1.5)],
    "memory of a 4,096 x 4,096 icon of all apps, beside one app": [Goal("ratio", most=1.1, limit=1.3)],
    "screen of a phone, scale 3": [Goal("ms", most=250)],
}
