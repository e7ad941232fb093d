"""Gathers what is handed out, packs it into a zip, and lists it for the installer.

    python3 handout/pack.py FOLDER NAME TolvanP.exe=build/win64/TolvanP.exe samples=samples ...

FOLDER then holds the gathered files, NAME.zip, and files.nsh with the list. The same commit gives the same bytes: entries
are sorted and carry the commit's time, or that of SOURCE_DATE_EPOCH.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import time
import zipfile

KEPT_WHEN_CHANGED = "samples"  # the operator may have made them their own


def commit_time():
    """In seconds, but even: neither zip files nor the installer keep the last bit."""
    return int(os.environ.get("SOURCE_DATE_EPOCH") or subprocess.check_output(
        ["git", "log", "-1", "--format=%ct"], cwd=pathlib.Path(__file__).parent)) & ~1


def gather(stage, parts, stamp):
    """Copies files and whole folders under their new names, and returns all names in order."""
    shutil.rmtree(stage, ignore_errors=True)
    for name, source in parts:
        if source.is_dir():
            shutil.copytree(source, stage / name)
        else:
            stage.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(source, stage / name)
    paths = sorted(path for path in stage.rglob("*") if path.is_file())
    for path in paths:
        os.utime(path, (stamp, stamp))
    return [path.relative_to(stage) for path in paths]


def write_zip(target, stage, names, stamp):
    with zipfile.ZipFile(target, "w") as archive:
        for name in names:
            entry = zipfile.ZipInfo(name.as_posix(), time.gmtime(stamp)[:6])
            entry.create_system = 3  # Unix, whose permissions follow
            entry.external_attr = 0o100644 << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, (stage / name).read_bytes())


def write_list(target, stage, names):
    """Macros that do something with each file, and with each folder after those within it."""
    def macro(name, paths):
        lines = [f'!insertmacro ${{DO}} "{str(path).replace("/", chr(92))}"' for path in paths]
        return "\n".join([f"!macro {name} DO", *lines, "!macroend", ""])

    kept = [name for name in names if name.parts[0] == KEPT_WHEN_CHANGED]
    folders = sorted({folder for name in names for folder in name.parents} - {pathlib.Path()}, reverse=True)
    size = sum((stage / name).stat().st_size for name in names)
    target.write_text(f"!define SIZE_IN_KB {size // 1024 + 1}\n"
                      + macro("EACH_FILE", [name for name in names if name not in kept])
                      + macro("EACH_FILE_KEPT_WHEN_CHANGED", kept) + macro("EACH_FOLDER", folders))


def main():
    folder, name, *parts = sys.argv[1:]
    folder, stamp = pathlib.Path(folder), commit_time()
    stage = folder / "files"
    split = [part.split("=", 1) for part in parts]
    names = gather(stage, [(name, pathlib.Path(source)) for name, source in split], stamp)
    write_zip(folder / f"{name}.zip", stage, names, stamp)
    write_list(folder / "files.nsh", stage, names)


if __name__ == "__main__":
    main()
