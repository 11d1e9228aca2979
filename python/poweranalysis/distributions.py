"""The numeric functions, over numbers and arrays.

Every function takes numbers or arrays that broadcast together; numbers give a number. Arguments
may be named. What a function reports beside its value follows it in a named tuple that begins with
`result`; a function of several values gives them as a named tuple. A computation that fails gives NumericFailure, -9999.0, in place of the value: compare
with it. Degrees of freedom, forms and kinds are whole numbers; a fraction raises ValueError. The
interpreter goes on with other threads meanwhile.
"""

from collections import namedtuple as _namedtuple

from . import _core

NumericFailure = _core.numeric_failure
"""What a function gives for a value that could not be computed."""

_FAILURE_NOTE = "NumericFailure is -9999.0. Also for arguments outside the domain."

_INTEGRATE_DOC = """The integral of f from `lower` to `upper`, by globally adaptive bisection with
extrapolation.

f takes a number and gives a number. `abserr` is the estimated error, `neval` the number of
evaluations, and `ier` is nonzero when the integral failed.

Source: Piessens, R., de Doncker-Kapenga, E., Ueberhuber, C. W. and Kahaner, D. K. (1983). QUADPACK.
        Springer. Routines DQAGSE, DQK21, DQPSRT, DQELG.
"""


def _result_type(name, results):
    kind = _namedtuple(name + "Result", results)
    kind.__module__ = __name__
    kind.__doc__ = f"What {name} gives."
    return kind


def _make(index, row):
    name, arguments, _whole, results, value, doc = row
    space = {"_call": _core.call_function, "_tuple": None, "__name__": __name__}
    if results:
        fields = results if value == "none" else ["result", *results]
        space["_tuple"] = globals()[name + "Result"] = _result_type(name, fields)
    signature = ", ".join(arguments)
    exec(f"def {name}({signature}):\n    return _call({index}, _tuple, {signature})\n", space)
    function = space[name]
    function.__doc__ = f"{doc}\n\n{_FAILURE_NOTE}" if "Fails" in doc else doc
    return function


def _make_all():
    names = []
    for index, row in enumerate(_core.functions()):
        globals()[row[0]] = _make(index, row)
        names.append(row[0])
    return names


AdaptiveIntegrateResult = _result_type(
    "AdaptiveIntegrate", ["result", "abserr", "neval", "ier"]
)


def AdaptiveIntegrate(f, lower, upper, epsabs, epsrel):
    return AdaptiveIntegrateResult(*_core.integrate(f, lower, upper, epsabs, epsrel))


AdaptiveIntegrate.__doc__ = _INTEGRATE_DOC

__all__ = [*_make_all(), "AdaptiveIntegrate", "NumericFailure"]
