"""What surrounds a script, as `python3 FILE` has it: its folder comes first on the path, and it is `__main__`.

The window runs this text once, and calls its functions for every script.
"""

import gc
import io
import os
import runpy
import sys
import time
import traceback

write = None  # takes bytes while a script runs


class Output(io.TextIOBase):
    """One for all scripts, since handlers of log records keep the stream that they found."""

    encoding = "utf-8"
    errors = "replace"

    def writable(self):
        return True

    def write(self, text):
        if not isinstance(text, str):
            raise TypeError(f"write() argument must be str, not {type(text).__name__}")
        if write is not None:
            write(text.encode("utf-8", "replace"))
        return len(text)


sys.stdout = sys.stderr = sys.__stdout__ = sys.__stderr__ = Output()
sys.stdin = sys.__stdin__ = None

whole_sleep = time.sleep


def sleep(seconds, /):
    """An exception of another thread comes out only where Python's own code runs."""
    slice = 0.05
    end = time.monotonic() + seconds
    while (rest := end - time.monotonic()) > slice:
        whole_sleep(slice)
    whole_sleep(rest if rest > 0 or seconds < 0 else 0)


sleep.__doc__ = whole_sleep.__doc__
time.sleep = sleep

outer_path = None


def prepare(file, package_folder, driver, writer):
    global outer_path, write
    write = writer
    outer_path = list(sys.path)
    if package_folder:
        sys.path.insert(0, package_folder)
    from poweranalysis import _core, automation

    _core.use_driver(driver)
    sys.path.insert(0, os.path.dirname(os.path.abspath(file)))
    sys.argv = [file]


def run(file):
    runpy.run_path(file, run_name="__main__")


def restore():
    global write
    gc.collect()
    core = sys.modules.get("poweranalysis._core")
    if core is not None:
        core.use_driver(None)
    sys.path[:] = outer_path
    write = None


def describe(file, kind, error, trace):
    """None when all is well. The traceback begins in the script."""
    if isinstance(error, SystemExit):
        code = error.code
        if code is None or code == 0:
            return None
        return f"The macro ended with status {code}" if isinstance(code, int) else str(code)
    inner = trace
    while inner is not None and inner.tb_frame.f_code.co_filename != file:
        inner = inner.tb_next
    return "".join(traceback.format_exception(kind, error, inner)).rstrip("\n")
