#!/usr/bin/env python3
"""Tests tools/windows-files with a simulated build directory, Qt and objdump, and with a program and a library that
mingw-w64 builds, if it is installed."""

import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# Prints, like objdump, the libraries in the list of the simulated program or library.
OBJDUMP = """\
#!/bin/sh
[ "$1" = -p ] || exit 1
grep -q '^broken' "$2" && { echo "file format not recognized" >&2; exit 1; }
echo "$2:     file format pei-x86-64"
sed 's/^/\\tDLL Name: /' "$2"
"""


class WindowsFilesTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = Path(folder.name)
        self.build = self.work / "build"
        self.qt = self.work / "qt"
        objdump = self.write("objdump", OBJDUMP)
        objdump.chmod(0o755)
        self.write("build/CMakeCache.txt", f"""\
# A comment: with a colon=
//Another one
CMAKE_OBJDUMP:FILEPATH={objdump}
Qt5_DIR:PATH={self.qt}/lib/cmake/Qt5
CMAKE_PREFIX_PATH:UNINITIALIZED={self.qt};{self.work}/zip
EMPTY:STRING=
""")
        self.write("build/bin/nelvo-package.exe", "KERNEL32.dll\nQt5Core.dll\n")
        self.write("qt/bin/Qt5Core.dll", "KERNEL32.dll\napi-ms-win-crt-heap-l1-1-0.dll\nVCRUNTIME140.dll\n")

    def write(self, name, content):
        file = self.work / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(content)
        return file

    def run_tool(self, *arguments):
        return subprocess.run([ROOT / "tools/windows-files", self.build, *arguments], capture_output=True, text=True)

    def files(self, *arguments):
        run = self.run_tool(*arguments)
        self.assertEqual(run.returncode, 0, run.stderr)
        return dict(line.split(maxsplit=1) for line in run.stdout.splitlines())

    def failure(self, *arguments):
        run = self.run_tool(*arguments)
        self.assertEqual(run.returncode, 1)
        return run.stderr

    def add_host(self):
        """A host with a window and pages, and a Qt with some modules."""
        self.write("build/app/NelvoEditor.exe", "Qt5Qml.dll\nQt5Gui.dll\n")
        self.write("qt/bin/Qt5Qml.dll", "Qt5Core.dll\n")
        self.write("qt/bin/Qt5Gui.dll", "Qt5Core.dll\nUSER32.dll\n")
        self.write("qt/plugins/platforms/qwindows.dll", "Qt5Gui.dll\nQt5Fonts.dll\n")
        self.write("qt/plugins/platforms/qoffscreen.dll", "Qt5Gui.dll\n")
        self.write("qt/bin/Qt5Fonts.dll", "GDI32.dll\n")
        for folder in ("QtQuick.2", "QtQuick/Controls", "QtQuick/Controls.2", "QtQuick/Layouts", "QtQuick/Templates.2",
                       "QtQuick/Window.2", "QtGraphicalEffects", "QtQml"):
            self.write(f"qt/qml/{folder}/qmldir", "module any\n")
        self.write("qt/qml/QtQuick/Controls/Styles/qmldir", "module QtQuick.Controls.Styles\n")
        self.write("qt/qml/QtQuick.2/qmldir", "module QtQuick\nplugin qtquick2plugin\ndepends QtQml 2.15\n")
        self.write("qt/qml/QtQuick.2/qtquick2plugin.dll", "Qt5Quick.dll\n")
        self.write("qt/qml/QtQuick.2/plugins.qmltypes", "")
        self.write("qt/bin/Qt5Quick.dll", "Qt5Qml.dll\n")

    def test_libraries_are_found_through_libraries(self):
        self.write("build/bin/nelvo-package.exe", "KERNEL32.dll\nquazip1-QT5.dll\n")
        self.write("zip/bin/quazip1-qt5.dll", "qt5core.dll\nzlib1.dll\n")
        self.write("zip/bin/zlib1.dll", "msvcrt.dll\nquazip1-qt5.dll\n")
        self.assertEqual(self.files(), {
            "nelvo-package.exe": f"{self.build}/bin/nelvo-package.exe",
            "quazip1-qt5.dll": f"{self.work}/zip/bin/quazip1-qt5.dll",
            "zlib1.dll": f"{self.work}/zip/bin/zlib1.dll",
            "Qt5Core.dll": f"{self.qt}/bin/Qt5Core.dll"})

    def test_own_files_come_along(self):
        self.write("build/app/updateConfig.json", "{}")
        self.write("build/app/loginchache.json", "[]")
        self.assertIn("updateConfig.json", self.files())
        self.assertNotIn("loginchache.json", self.files())

    def test_library_that_is_loaded_by_name(self):
        self.write("build/bin/nelvo-package.exe", "Qt5Network.dll\n")
        self.write("qt/bin/Qt5Network.dll", "WS2_32.dll\n")
        self.assertNotIn("libssl-1_1-x64.dll", self.files())
        self.write("qt/bin/libssl-1_1-x64.dll", "libcrypto-1_1-x64.dll\n")
        self.write("qt/bin/libcrypto-1_1-x64.dll", "ADVAPI32.dll\n")
        self.assertIn("libcrypto-1_1-x64.dll", self.files())

    def test_program_without_windows_needs_no_plugins(self):
        self.assertEqual(set(self.files()), {"nelvo-package.exe", "Qt5Core.dll"})

    def test_windows_need_plugins_and_modules(self):
        self.add_host()
        files = self.files()
        self.assertLessEqual({"platforms/qwindows.dll", "Qt5Fonts.dll", "QtQuick.2/qtquick2plugin.dll", "Qt5Quick.dll",
                              "QtQuick.2/qmldir", "QtQml/qmldir", "QtQuick/Controls/qmldir",
                              "QtQuick/Controls.2/qmldir", "QtQuick/Controls/Styles/qmldir"}, set(files))
        self.assertNotIn("platforms/qoffscreen.dll", files)
        self.assertNotIn("QtQuick.2/plugins.qmltypes", files)

    def test_probe_needs_the_offscreen_plugin(self):
        self.add_host()
        self.write("build/bin/nelvo-probe.exe", "Qt5Gui.dll\n")
        self.assertIn("platforms/qoffscreen.dll", self.files())

    def test_modules_are_found_through_modules(self):
        self.add_host()
        self.write("qt/qml/QtQuick/Window.2/Window.qml", """\
import QtQuick 2.15
// import QtNever 1.0
import QtFirst.Inner 1.3 as Inner
import QtSecond
import "../elsewhere"
""")
        self.write("qt/qml/QtFirst.1/Inner/qmldir", "module QtFirst.Inner\n")
        self.write("qt/qml/QtSecond/qmldir", "module QtSecond\n")
        self.write("qt/qml/QtSecond/code.js", ".import QtThird 1.0 as Third\n")
        self.write("qt/qml/QtThird.1/qmldir", "module QtThird\ndepends QtFourth/private 1.0\n")
        self.write("qt/qml/QtFourth/private/qmldir", "module QtFourth.private\n")
        self.write("qt/qml/QtUnused/qmldir", "module QtUnused\n")
        files = set(self.files())
        self.assertLessEqual({"QtFirst.1/Inner/qmldir", "QtSecond/code.js", "QtThird.1/qmldir",
                              "QtFourth/private/qmldir"}, files)
        self.assertNotIn("QtUnused/qmldir", files)

    def test_folder_is_filled(self):
        self.add_host()
        target = self.work / "out/folder"
        files = self.files(target)
        copied = {str(file.relative_to(target)) for file in target.rglob("*") if file.is_file()}
        self.assertEqual(copied, set(files))
        self.assertEqual((target / "platforms/qwindows.dll").read_text(), "Qt5Gui.dll\nQt5Fonts.dll\n")

    def test_missing_library_is_told_and_nothing_copied(self):
        self.write("build/bin/nelvo-package.exe", "Qt5Core.dll\nquazip1-qt5.dll\n")
        target = self.work / "out"
        self.assertIn("quazip1-qt5.dll, which nelvo-package.exe needs", self.failure(target))
        self.assertFalse(target.exists())

    def test_missing_plugin_is_told(self):
        self.add_host()
        (self.qt / "plugins/platforms/qwindows.dll").unlink()
        self.assertIn("platforms/qwindows.dll, a plug-in of Qt", self.failure())

    def test_missing_module_is_told(self):
        self.add_host()
        (self.qt / "qml/QtQuick/Layouts/qmldir").unlink()
        self.assertRegex(self.failure(), r"QML module QtQuick\.Layouts 1\.15, which (resources|devkit/host)/\S+\.qml imports")

    def test_module_that_a_plugin_registers_need_not_be_there(self):
        self.add_host()
        self.write("qt/qml/QtQuick/Layouts/L.qml", "import QtQuick.Layouts.impl 1.0\n")
        self.files()

    def test_unreadable_library_is_told(self):
        self.write("qt/bin/Qt5Core.dll", "broken\n")
        self.assertIn("Qt5Core.dll: file format not recognized", self.failure())

    def test_what_is_no_build_is_told(self):
        (self.build / "bin/nelvo-package.exe").unlink()
        self.assertIn("no program in", self.failure())
        (self.build / "CMakeCache.txt").write_text("CMAKE_OBJDUMP:FILEPATH=CMAKE_OBJDUMP-NOTFOUND\n")
        self.assertIn("CMAKE_OBJDUMP is not set", self.failure())
        (self.build / "CMakeCache.txt").unlink()
        self.assertIn("it has no CMakeCache.txt", self.failure())

    def test_real_program(self):
        compiler = shutil.which("x86_64-w64-mingw32-g++-posix") or shutil.which("x86_64-w64-mingw32-g++")
        objdump = shutil.which("x86_64-w64-mingw32-objdump")
        if not compiler or not objdump:
            self.skipTest("mingw-w64 is not installed")
        library = self.build / "app/own.dll"
        library.parent.mkdir()
        program = self.build / "bin/nelvo-package.exe"
        subprocess.run([compiler, "-shared", "-o", library, "-x", "c++", "-"], check=True, text=True,
                       input='#include <string>\n#include <thread>\n'
                             '__declspec(dllexport) void own() { std::thread([] { std::string("x").size(); }).join(); }')
        subprocess.run([compiler, "-o", program, "-x", "c++", "-", "-x", "none", library], check=True, text=True,
                       input="__declspec(dllimport) void own();\nint main() { own(); }")
        self.write("build/CMakeFiles/3.25.1/CMakeCXXCompiler.cmake", f"""\
set(CMAKE_CXX_COMPILER "{compiler}")
set(CMAKE_CXX_COMPILER_ARG1 "")
""")
        self.write("build/CMakeCache.txt", f"""\
CMAKE_OBJDUMP:FILEPATH={objdump}
Qt5_DIR:PATH={self.qt}/lib/cmake/Qt5
""")
        self.assertEqual(set(self.files()), {"own.dll", "nelvo-package.exe", "libstdc++-6.dll", "libgcc_s_seh-1.dll",
                                             "libwinpthread-1.dll"})


if __name__ == "__main__":
    unittest.main()
