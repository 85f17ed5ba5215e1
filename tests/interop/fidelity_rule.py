"""A change that a load and a save make knowingly."""
import typing


class Rule(typing.NamedTuple):
    name: str
    reason: str
    subjects: frozenset  # what it may touch
    # What has to be the same nevertheless: alike(subject, value) with the change taken out; None where all may change.
    alike: typing.Optional[typing.Callable] = None
