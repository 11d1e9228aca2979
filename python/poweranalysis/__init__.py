"""Power analysis, required sample size and interval estimation.

    import poweranalysis as pa

    pa.size("T2", Mu1=5, Mu2=0, Sigma=10, PowerGoal=0.8).value      # 64
    pa.power("two-means", mu1=5, mu2=0, sigma=10, h0="upper")       # shows as a table
    pa.interval("T1", TObserved=2.4, SampleSize=30).limits["Es"]    # (lower, upper)
    pa.calc("t", unknown="delta", t=2.5, df=20, p=0.05).value       # a probability calculator
    pa.distributions.NoncentralTCdf([1, 2, 3], 10, 0.5)             # arrays broadcast

    app = pa.Application()                                          # the dialogs as objects
    startup = app.StartAnalysis()

The names below `Application` are made when they are first asked for, so that importing stays quick.
"""

from ._core import __version__

_HOMES = {
    "distributions": ("distributions", None),
    "automation": ("automation", None),
    "power": ("_calculations", "power"),
    "size": ("_calculations", "size"),
    "interval": ("_calculations", "interval"),
    "calc": ("_calculations", "calc"),
    "calculators": ("_calculations", "calculators"),
    "families": ("_calculations", "families"),
    "Result": ("_results", "Result"),
    "Table": ("_results", "Table"),
    "Row": ("_results", "Row"),
    "Chart": ("_results", "Chart"),
    "Charts": ("_results", "Charts"),
    "Message": ("_results", "Message"),
    "Refused": ("_results", "Refused"),
    "run_macro": ("_macros", "run_macro"),
    "MacroRun": ("_macros", "MacroRun"),
}

_AUTOMATION = None


def _automation():
    global _AUTOMATION
    if _AUTOMATION is None:
        from . import automation

        _AUTOMATION = automation
    return _AUTOMATION


def __getattr__(name):
    if name == "__all__":
        names = [*_HOMES, *_automation().__all__]
        globals()["__all__"] = names
        return names
    if name.startswith("__"):
        raise AttributeError(f"module 'poweranalysis' has no attribute {name!r}")
    from importlib import import_module

    home = _HOMES.get(name)
    if home is None:
        value = getattr(_automation(), name, None)
        if value is None or name not in _automation().__all__:
            raise AttributeError(f"module 'poweranalysis' has no attribute {name!r}")
    else:
        value = import_module("." + home[0], __name__)
        if home[1] is not None:
            value = getattr(value, home[1])
    globals()[name] = value
    return value


def __dir__():
    return sorted({*globals(), *_HOMES, *_automation().__all__})
