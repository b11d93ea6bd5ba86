"""Programs and libraries of Windows for tests of the runner, compiled here."""

import struct
import subprocess

COMPILER = "x86_64-w64-mingw32-gcc-posix"
LIBRARY_TOOL = "x86_64-w64-mingw32-dlltool"
GCC_NAME = "_ZN7QWidget4showEv"
MICROSOFT_NAME = "?show@QWidget@@QAEXXZ"


class Workshop:
    """Makes programs and libraries in a folder."""

    def __init__(self, folder):
        self.folder = folder

    def library(self, name, *links):
        """A library that calls the function of those it links, as `import_library` has made them."""
        calls = "extern void thing(void); " if links else "static void thing(void) {} "
        source = calls + "__declspec(dllexport) void own(void) { thing(); }"
        return self._compile(self.folder / name, source, "-shared", *links)

    def import_library(self, name, *, exports="thing"):
        """Stands for a library when another file is linked: the library itself need not be there."""
        definition = self.folder / f"{name}.def"
        definition.write_text(f'LIBRARY "{name}"\nEXPORTS\n"{exports}"\n')
        made = self.folder / f"lib{name}.a"
        subprocess.run([LIBRARY_TOOL, "-d", str(definition), "-l", str(made)], check=True)
        return made

    def program(self, *links, calls="thing", name="program.exe", text="", crashes=False, counts=""):
        """A program that calls the function of the libraries it links, of one name. Its exit status is the first
        character of the text, or, with `counts`, the number of its starts, which it keeps in a file of that name.
        """
        if counts:
            source = (
                "#include <stdio.h>\nint main(void) { "
                f'FILE* file = fopen("{counts}", "ab"); fputc(0, file); fseek(file, 0, SEEK_END); '
                "return (int)ftell(file); }"
            )
            return self._compile(self.folder / name, source)
        call = f'extern void thing(void) __asm__("\\"{calls}\\""); ' if links else ""
        body = "thing(); " if links else "*(volatile int*)0 = 1; " if crashes else ""
        source = f'{call}const char text[] = "{text}"; int main(void) {{ {body}return text[0]; }}'
        return self._compile(self.folder / name, source, *links)

    @staticmethod
    def _compile(path, source, *options):
        path.parent.mkdir(parents=True, exist_ok=True)
        command = [COMPILER, "-x", "c", "-", "-o", str(path), "-x", "none", *map(str, options)]
        subprocess.run(command, input=source, text=True, check=True)
        return path


def with_machine(path, machine):
    """The same file for another processor, as far as its header tells."""
    data = bytearray(path.read_bytes())
    (header,) = struct.unpack_from("<I", data, 0x3C)
    struct.pack_into("<H", data, header + 4, machine)
    path.write_bytes(data)
    return path


def agents(workshop, build, major):
    """A build folder with an agent of this Qt that does nothing."""
    folder = build / f"windows-qt{major}" / "bin"
    made = Workshop(folder)
    made.library("qtdriver.dll")
    made.library("qttestability.dll")
    return build
