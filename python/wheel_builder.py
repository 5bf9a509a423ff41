# SPDX-License-Identifier: Apache-2.0
"""Builds the package for pip, with the standard library alone.

pip fetches whatever builds a package, setuptools too, even where that is installed already. So that a machine without
a network can install it, nothing is needed here.
"""

import ast
import base64
import configparser
import hashlib
import io
import tarfile
import zipfile
from pathlib import Path
from typing import Any, Dict, Optional

_HERE = Path(__file__).resolve().parent
_DATE = (1980, 1, 1, 0, 0, 0)  # the same files make the same wheel
_WHEEL = "Wheel-Version: 1.0\nGenerator: buttondriver\nRoot-Is-Purelib: true\nTag: py3-none-any\n"


def build_wheel(folder: str, settings: Optional[Dict[str, Any]] = None, metadata_folder: Optional[str] = None) -> str:
    """Writes the wheel into the folder; returns its name."""
    files = {path.relative_to(_HERE).as_posix(): path.read_bytes() for path in _sources("buttondriver")}
    return _write_wheel(folder, files)


def build_editable(folder: str, settings: Optional[Dict[str, Any]] = None, metadata_folder: Optional[str] = None) -> str:
    """Writes a wheel that sends Python to this folder, and nothing into this folder; returns its name."""
    return _write_wheel(folder, {"buttondriver.pth": f"{_HERE}\n".encode()})


def _write_wheel(folder: str, files: Dict[str, bytes]) -> str:
    project = _Project()
    files[f"{project.info}/METADATA"] = project.metadata.encode()
    files[f"{project.info}/WHEEL"] = _WHEEL.encode()
    files[f"{project.info}/entry_points.txt"] = project.entry_points.encode()
    rows = [f"{name},sha256={_digest(data)},{len(data)}" for name, data in files.items()]
    files[f"{project.info}/RECORD"] = "\n".join([*rows, f"{project.info}/RECORD,,", ""]).encode()
    name = f"{project.full_name}-py3-none-any.whl"
    with zipfile.ZipFile(Path(folder, name), "w", zipfile.ZIP_DEFLATED) as wheel:
        for path, data in files.items():
            entry = zipfile.ZipInfo(path, _DATE)
            entry.external_attr = 0o644 << 16
            wheel.writestr(entry, data, zipfile.ZIP_DEFLATED)
    return name


def build_sdist(folder: str, settings: Optional[Dict[str, Any]] = None) -> str:
    """Writes the source package into the folder; returns its name."""
    project = _Project()
    name = f"{project.full_name}.tar.gz"
    with tarfile.open(Path(folder, name), "w:gz") as archive:
        for path in [_HERE / "pyproject.toml", _HERE / "wheel_builder.py", *_sources("buttondriver")]:
            archive.add(path, f"{project.full_name}/{path.relative_to(_HERE).as_posix()}")
        info = tarfile.TarInfo(f"{project.full_name}/PKG-INFO")
        info.size = len(project.metadata.encode())
        archive.addfile(info, io.BytesIO(project.metadata.encode()))
    return name


class _Project:
    """What pyproject.toml says. Its lines are simple enough to be read without Python 3.11's parser."""

    def __init__(self) -> None:
        table = configparser.ConfigParser(delimiters="=")
        table.read(_HERE / "pyproject.toml", encoding="utf-8")
        said = {key: ast.literal_eval(table["project"][key]) for key in ("name", "version", "description")}
        python = ast.literal_eval(table["project"]["requires-python"])
        plugin = ast.literal_eval(table["project.entry-points.pytest11"]["buttondriver"])
        self.full_name = f"{said['name']}-{said['version']}"
        self.info = f"{self.full_name}.dist-info"
        self.entry_points = f"[pytest11]\nbuttondriver = {plugin}\n"
        self.metadata = (
            f"Metadata-Version: 2.1\nName: {said['name']}\nVersion: {said['version']}\n"
            f"Summary: {said['description']}\nLicense: Apache-2.0\nRequires-Python: {python}\n"
        )


def _sources(package: str) -> "list[Path]":
    found = (_HERE / package).rglob("*")
    return sorted(path for path in found if path.is_file() and "__pycache__" not in path.parts)


def _digest(data: bytes) -> str:
    return base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
