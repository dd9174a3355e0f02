"""Who is at the screen, as logind would write it: sd-login reads files, and a machine without logind has none."""
import os
import pathlib

SEATS = pathlib.Path("/run/systemd/seats")


def set_active_user(uid):
    """Nobody for None."""
    for folder in ("seats", "sessions", "users", "machines"):
        (pathlib.Path("/run/systemd") / folder).mkdir(parents=True, exist_ok=True)
    session = "" if uid is None else f"ACTIVE=vm{uid}\nACTIVE_UID={uid}\n"
    written = SEATS / ".seat0"
    written.write_text(f"IS_SEAT0=1\nCAN_MULTI_SESSION=1\nCAN_TTY=1\nCAN_GRAPHICAL=1\n{session}")
    os.rename(written, SEATS / "seat0")
