#!/usr/bin/env python3
"""Checks that a browser takes the WGSL of programs.

modules_test.py [--keep FOLDER] TARNWICK FILE...

Compiles each file (an episode is assembled first) to WGSL, and makes a shader module of each entry
point, and a pipeline of each kernel. Prints each error, and how many entry points were taken and how
many programs were refused by the compiler. Texts that need a feature that the device lacks are
counted and left out. The status is 1 if the browser refuses a text, and 77 if there is no browser.
"""

import os
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(__file__))
import browser  # noqa: E402
from programs import KNOWN, compiled, source_of  # noqa: E402

CHECK = """
async (code, stage, name) => {
    const module = device.createShaderModule({code});
    const found = (await module.getCompilationInfo()).messages
        .filter(each => each.type === "error")
        .map(each => `line ${each.lineNum}: ${each.message}`);
    if (found.length || stage !== "kernel")
        return found;
    try {
        await device.createComputePipelineAsync({layout: "auto", compute: {module}});
    } catch (error) {
        return [error.message];
    }
    return [];
}
"""


def main():
    arguments = sys.argv[1:]
    keep = None
    if arguments[0] == "--keep":
        keep, arguments = arguments[1], arguments[2:]
        os.makedirs(keep, exist_ok=True)
    if not browser.find():
        print("No browser (chromium, chromium-driver) is here: no text is checked.")
        return 77
    tarnwick, files = arguments[0], arguments[1:]
    taken = wrong = without = 0
    refused = []
    known = 0
    with browser.Browser() as page:
        features = page.evaluate("[...device.features]")
        for path in files:
            name = os.path.splitext(os.path.basename(path))[0]
            document, message = compiled(tarnwick, source_of(tarnwick, path))
            if document is None:
                refused.append(f"{name}: {message}")
                continue
            for entry in document["entryPoints"]:
                text = entry["wgsl"]["text"]
                needed = [each for each in entry["wgsl"]["features"] if each not in features]
                if needed:
                    without += 1
                    continue
                if keep:
                    with open(f"{keep}/{name}.{entry['name'].replace('/', '_')}.wgsl", "w",
                              encoding="utf-8") as file:
                        file.write(text)
                found = page.call(CHECK, text, entry["stage"], entry["name"])
                if found and name in KNOWN:
                    known += 1
                    continue
                taken += not found
                wrong += bool(found)
                for each in found:
                    print(f"{name}, {entry['name']}: {each}", flush=True)
    print("Refused by the compiler:")
    for each in refused:
        print("  " + each)
    print(f"{taken} entry points are taken, {wrong} are not, {known} as is known; {without} need "
          f"features that are not here; {len(refused)} programs are refused.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
