"""Runs the program tests. -k NAME runs those whose name holds it."""

import argparse
import faulthandler
import pathlib
import sys
import unittest

import tolvan

SUITE_LIMIT = 1100  # seconds, after which everything is given up with a trace


class ShownAtOnce(unittest.TextTestResult):
    """Shows a failure when it happens: a run that is given up later never gets to the list at its end."""

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self.stream.writeln(self.failures[-1][1])

    def addError(self, test, err):
        super().addError(test, err)
        self.stream.writeln(self.errors[-1][1])


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("-k", action="append", metavar="NAME")
    arguments = parser.parse_args()
    faulthandler.dump_traceback_later(SUITE_LIMIT, exit=True)
    loader = unittest.TestLoader()
    loader.testNamePatterns = arguments.k and [f"*{name}*" for name in arguments.k]
    suite = loader.discover(str(pathlib.Path(__file__).parent))
    result = unittest.TextTestRunner(sys.stdout, verbosity=2, resultclass=ShownAtOnce).run(suite)
    tolvan.desktop.close()
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
