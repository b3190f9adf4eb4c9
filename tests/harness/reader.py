"""A program as a screen reader meets it."""
import json
import pathlib
import subprocess

ACCESSIBLE = pathlib.Path(__file__).with_name("accessible.py")


def accessible_objects(desktop, application, *action):
    """(role, name) to what is seen of it; with an action, after it was done."""
    answer = subprocess.run(["/usr/bin/python3", "-B", str(ACCESSIBLE), application, *action], env=desktop.environment,
                            text=True, capture_output=True, timeout=60)
    assert answer.returncode == 0, answer.stderr
    found = {}

    def collect(node):
        found[node["role"], node["name"]] = node
        for child in node["children"]:
            collect(child)

    collect(json.loads(answer.stdout))
    return found
