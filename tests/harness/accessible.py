"""accessible.py APPLICATION [ROLE NAME ACTION]
Prints what assistive technology sees of a running program, as JSON; with ROLE NAME ACTION it acts on that object first.
Runs as a process of its own, in the environment of a desktop."""
import json
import sys
import time

import pyatspi
from gi.repository import GLib


def states_of(accessible):
    return [pyatspi.stateToString(state) for state in accessible.getState().getStates()]


def actions_of(accessible):
    try:
        action = accessible.queryAction()
    except NotImplementedError:
        return {}
    return {action.getName(index): index for index in range(action.nActions)}


def extents_of(accessible):
    """In pixels of the screen: x, y, width, height."""
    try:
        return list(accessible.queryComponent().getExtents(pyatspi.DESKTOP_COORDS))
    except NotImplementedError:
        return None


def tree(accessible):
    """None where it has gone meanwhile."""
    try:
        children = [tree(child) for child in accessible if child is not None]
        return {"role": accessible.getRoleName(), "name": accessible.name, "description": accessible.description,
                "states": states_of(accessible), "actions": list(actions_of(accessible)),
                "extents": extents_of(accessible), "children": [child for child in children if child is not None]}
    except GLib.Error:
        return None


def every(accessible):
    yield accessible
    for child in accessible:
        if child is not None:
            yield from every(child)


def application(name, deadline=20):
    end = time.monotonic() + deadline
    while time.monotonic() < end:
        for found in pyatspi.Registry.getDesktop(0):
            if found is not None and found.name == name:
                return found
    sys.exit(f"{name} is not on the accessibility bus")


root = application(sys.argv[1])
if len(sys.argv) > 2:
    role, name, wanted = sys.argv[2:]
    target = next(found for found in every(root) if found.getRoleName() == role and found.name == name)
    target.queryAction().doAction(actions_of(target)[wanted])
print(json.dumps(tree(root)))
