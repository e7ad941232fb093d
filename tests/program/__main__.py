"""Runs the program tests, marking results as the other suites do. -k NAME runs those whose name holds it."""

import argparse
import faulthandler
import pathlib
import sys
import time
import unittest

SUITE_LIMIT = 1100  # seconds, after which everything is given up with a trace


class MarkedResult(unittest.TestResult):
    def startTest(self, test):
        super().startTest(test)
        self.began = time.monotonic()
        print("[ RUN      ]", name_of(test), flush=True)

    def stopTest(self, test):
        faults = [trace for failed, trace in self.failures + self.errors if failed.id().startswith(test.id())]
        mark, taken = "[  FAILED  ]" if faults else "[       OK ]", 1000 * (time.monotonic() - self.began)
        print(*faults, f"{mark} {name_of(test)} ({taken:.0f} ms)", sep="\n", flush=True)
        super().stopTest(test)


def name_of(test):
    return ".".join(test.id().split(".")[-2:])


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("-k", action="append", metavar="NAME")
    arguments = parser.parse_args()
    faulthandler.dump_traceback_later(SUITE_LIMIT, exit=True)
    loader = unittest.TestLoader()
    loader.testNamePatterns = arguments.k and [f"*{name}*" for name in arguments.k]
    suite = loader.discover(str(pathlib.Path(__file__).parent))
    result = MarkedResult()
    suite.run(result)
    print(f"[==========] {result.testsRun} tests ran.")
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
