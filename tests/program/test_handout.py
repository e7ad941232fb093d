"""The installer, silently: what it puts where, an upgrade, and that nothing of it is left behind."""

import re
import shutil
import subprocess
import zipfile

from desktop import LIMIT, wait_for
from script import ScriptTest
from tolvan import PREFIX, ROOT, TITLE, Program, start_wine, windows_path

NAME = str(ROOT / f"build/win64/handout/TolvanP-{TITLE.rpartition('V')[2]}-win64")
CLASSES, UNINSTALL = r"HKCU\Software\Classes", r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\TolvanP"


def registry(*command):
    return subprocess.run(["wine", "reg", *command], stdin=subprocess.DEVNULL, capture_output=True).stdout.decode()


class HandoutTest(ScriptTest):
    def install(self):
        return start_wine(NAME + "-setup.exe", "/S").wait(LIMIT)

    def state(self):
        return [registry("query", key, "/s") for key in (CLASSES, UNINSTALL)] + [
            path.name for path in PREFIX.glob("drive_c/users/*/AppData/**/Tolvan Programmer*")]

    def test_install_open_upgrade_remove(self):
        subprocess.check_output(["cmake", "--build", ROOT / "build/win64", "--target", "installer"])
        registry("add", CLASSES + r"\.pgt", "/ve", "/d", "Other.File", "/f")
        self.addCleanup(registry, "delete", CLASSES + r"\.pgt", "/f")
        before, _ = self.state(), self.install()
        place, = PREFIX.glob("drive_c/users/*/AppData/Local/Programs/Tolvan Programmer")
        self.assertEqual({str(path.relative_to(place)) for path in place.rglob("*.*")},
                         {*zipfile.ZipFile(NAME + ".zip").namelist(), "uninstall.exe"})
        self.assertIn("Tolvan Programmer.lnk", self.state())
        path, option = re.search(r'"(.+)" (-F=)"%1"', registry("query", CLASSES, "/s")).groups()
        with Program(option + windows_path(place / "samples/STOCK.PGT"), program=path) as program:
            program.window("Programming (STOCK)").close()
            self.assertEqual((self.install(), program.exit()), (2, 0))  # given up
        (place / "samples/STOCK.PGT").write_bytes(b"changed")
        self.assertEqual(self.install(), 0)
        start_wine(place / "uninstall.exe", "/S").wait(LIMIT)
        wait_for("the end of the uninstaller", lambda: not (place / "uninstall.exe").exists())
        self.assertEqual([path.read_bytes() for path in place.rglob("*.*")], [b"changed"])
        shutil.rmtree(place, ignore_errors=True)  # an empty one the uninstaller takes away itself
        self.assertEqual(self.state(), before)
