"""A LibreOffice that listens, for scripts that steer it: with a profile of its own, ended when the work is done."""
import contextlib
import pathlib
import subprocess
import tempfile
import time

import uno


def connect(pipe, seconds=60):
    """The desktop of the LibreOffice that listens at the pipe."""
    context = uno.getComponentContext()
    resolver = context.ServiceManager.createInstanceWithContext("com.sun.star.bridge.UnoUrlResolver", context)
    end = time.monotonic() + seconds
    while True:
        try:
            remote = resolver.resolve(f"uno:pipe,name={pipe};urp;StarOffice.ComponentContext")
            return remote.ServiceManager.createInstanceWithContext("com.sun.star.frame.Desktop", remote)
        except Exception:  # not listening yet
            if time.monotonic() > end:
                raise
            time.sleep(0.3)


@contextlib.contextmanager
def running(program):
    with tempfile.TemporaryDirectory() as profile:
        pipe = "rubrica" + pathlib.Path(profile).name
        office = subprocess.Popen([program, f"-env:UserInstallation=file://{profile}/profile", "--headless",
                                   "--norestore", f"--accept=pipe,name={pipe};urp;"], stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL)
        try:
            desktop = connect(pipe)
            yield desktop
            desktop.terminate()
            office.wait(30)
        finally:
            office.kill()
            office.wait()
