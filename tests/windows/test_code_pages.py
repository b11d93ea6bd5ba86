"""A Windows of which the code page is not that of western Europe."""

import shutil
import subprocess

import pytest
from extensions import extension
from hostapp import HostApp
from hostplatform import BUILD, shown

TAG = "qt486_vs2015_x64"
GREEK, RUSSIAN = "el_GR.UTF-8", "ru_RU.UTF-8"
TEXTS = {GREEK: "Καφές", RUSSIAN: "Кофе"}


@pytest.fixture(scope="module", params=TEXTS, ids=["code page 1253", "code page 1251"])
def language(request, tmp_path_factory):
    """The locale that Wine takes its code page from, and variables that have it there."""
    folder = tmp_path_factory.mktemp("locales")
    name = request.param
    command = ["localedef", "-i", name.partition(".")[0], "-f", "UTF-8", str(folder / name)]
    if subprocess.run(command, capture_output=True, check=False).returncode != 0:
        pytest.skip("no descriptions of languages here (Debian: locales)")
    return name, {"LC_ALL": name, "LANG": name, "LOCPATH": str(folder)}


@pytest.fixture
def start(language):
    apps = []

    def start_with(program, **environment):
        apps.append(HostApp(program, env={**language[1], **environment}))
        return apps[-1]

    yield start_with
    for app in apps:
        app.end()


def test_the_hook_is_found_in_a_folder_whose_name_only_this_code_page_has(language, start, tmp_path):
    prefix = tmp_path / TEXTS[language[0]]
    libraries = prefix / TAG / "bin"
    libraries.mkdir(parents=True)
    for library in ("squishhook.dll", "squishqtwrapper.dll"):
        shutil.copy(BUILD / "testtool" / "bin" / library, libraries)
    app = start("bridgehost", SQUISH_PREFIX=shown(prefix))
    assert int(app.greeting.split(" ")[3]) >= 41100, app.greeting
    app.do("environment")
    assert app.events("environment") == [f"environment {shown(prefix)}\\\\{TAG}"]


def test_texts_go_in_and_out_as_unicode_whatever_the_code_page(language, start):
    app = start("keyhost")
    text = "".join(TEXTS.values()) + "é"
    assert app.request(extension("+type", "Keys ä", "path=line", text)) == "0,QLineEdit"
    assert app.get("line", "text") == text
    assert app.read("Keys \xe4", "line", "text") == f"u:{text}"
