from . import automation as automation
from . import distributions as distributions
from ._calculations import calc as calc
from ._calculations import calculators as calculators
from ._calculations import families as families
from ._calculations import interval as interval
from ._calculations import power as power
from ._calculations import size as size
from ._macros import MacroRun as MacroRun
from ._macros import run_macro as run_macro
from ._results import Chart as Chart
from ._results import Charts as Charts
from ._results import Message as Message
from ._results import Refused as Refused
from ._results import Result as Result
from ._results import Row as Row
from ._results import Table as Table
from .automation import *

__version__: str
