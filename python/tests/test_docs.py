"""The examples of the documentation give what stands beside them."""

import doctest
from pathlib import Path

GUIDE = Path(__file__).parents[2] / "docs" / "python.md"


def test_the_examples_of_the_guide_are_true():
    failed, tried = doctest.testfile(
        str(GUIDE),
        module_relative=False,
        optionflags=doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE,
    )
    assert tried > 5 and failed == 0
