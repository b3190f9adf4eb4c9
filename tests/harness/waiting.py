"""Waiting on conditions with a deadline; there are no bare sleeps in the tests and the tour."""
import threading
import time

_never = threading.Event()


def pause(seconds):
    """Between two looks at something; no test waits for a time to pass."""
    _never.wait(seconds)


class Timeout(AssertionError):
    pass


def wait_until(condition, what, seconds=10.0, interval=0.02):
    """Polls until condition() is truthy and returns its value; fails with `what` at the deadline."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise Timeout(f"did not happen within {seconds} s: {what}")
        pause(interval)


def holds_for(condition, what, seconds):
    """Fails as soon as condition() is falsy within `seconds`: for what must not happen."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if not condition():
            raise AssertionError(f"did not hold for {seconds} s: {what}")
        pause(0.02)
