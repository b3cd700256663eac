"""Programs compiled to WGSL for the tests."""

import json
import os
import subprocess

# Programs that the browser refuses, or that need more than these tests give them (docs/wgsl.md).
KNOWN = {
    "function_constants": "the values of constants of 8 and 16 bits in the compilation",
    "simdgroup_matrices": "SIMD-groups of eight threads; those of the software adapter have four",
    "texture_run_time_levels": "more storage textures than a stage may have",
}


def compiled(tarnwick, source):
    """The document of a program's entry points, or None and the first message about it."""
    done = subprocess.run([tarnwick, "msl", "-", "--target", "wgsl", "--reflect", "json"],
                          input=source, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    try:
        document = json.loads(done.stdout)
    except json.JSONDecodeError:
        return None, done.stderr.decode()
    if not document["compiled"]:
        errors = [each["text"] for each in document["diagnostics"] if each["kind"] == "error"]
        return None, errors[0] if errors else done.stderr.decode()
    return document, ""


def source_of(tarnwick, path):
    """The program in a file; that of an episode is assembled."""
    if "/episodes/" in os.path.abspath(path):
        return subprocess.run([tarnwick, "assemble", path], stdout=subprocess.PIPE,
                              check=True).stdout
    with open(path, "rb") as file:
        return file.read()


def entry_named(document, name):
    """The entry point of that name."""
    return next(each for each in document["entryPoints"] if each["name"] == name)


def with_declared(entry, values):
    """The values of the override constants that the text declares, by their numbers as text."""
    declared = {each["id"] for each in entry["wgsl"]["overrides"]}
    return {str(number): value for number, value in values.items() if number in declared}
