"""Runs the program tests, marking results as the other suites do. -k NAME runs those whose name holds it."""

import argparse
import faulthandler
import pathlib
import sys
import time
import traceback
import unittest

SUITE_LIMIT = 1100  # seconds, after which everything is given up with a trace


class MarkedResult(unittest.TestResult):
    def startTest(self, test):
        super().startTest(test)
        self.began, self.bad_before = time.monotonic(), self.bad()
        print(f"[ RUN      ] {name_of(test)}", flush=True)

    def stopTest(self, test):
        mark = "[       OK ]" if self.bad() == self.bad_before else "[  FAILED  ]"
        print(f"{mark} {name_of(test)} ({(time.monotonic() - self.began) * 1000:.0f} ms)", flush=True)
        super().stopTest(test)

    def bad(self):
        return len(self.failures) + len(self.errors)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        print(self.failures[-1][1])

    def addError(self, test, err):
        super().addError(test, err)
        print(self.errors[-1][1])

    def addSubTest(self, test, subtest, err):
        super().addSubTest(test, subtest, err)
        if err:
            print(subtest, "".join(traceback.format_exception(*err)))


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
