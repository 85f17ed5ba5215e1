"""LibreOffice as a server that scripts look into through its Python bridge. Importing this ends the script with a word
where LibreOffice or the bridge is missing."""
import contextlib
import pathlib
import subprocess
import sys
import time

import libreoffice

try:
    import uno
    from com.sun.star.beans import PropertyValue
except ImportError:
    print("skipped: LibreOffice's Python bridge is not on this machine")
    sys.exit(libreoffice.SKIPPED)
if libreoffice.program() is None:
    print("skipped: LibreOffice is not on this machine")
    sys.exit(libreoffice.SKIPPED)


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
def desktop(work):
    """A desktop of its own, with its profile in the directory `work`, that ends with the block."""
    pipe = "rubrica" + pathlib.Path(work).name
    office = subprocess.Popen([libreoffice.program(), f"-env:UserInstallation=file://{work}/profile", "--headless",
                               "--norestore", f"--accept=pipe,name={pipe};urp;"], stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL)
    try:
        server = connect(pipe)
        yield server
        server.terminate()
        office.wait(30)
    finally:
        office.kill()


def open_hidden(server, path):
    hidden = PropertyValue()
    hidden.Name, hidden.Value = "Hidden", True
    return server.loadComponentFromURL(pathlib.Path(path).as_uri(), "_blank", 0, (hidden,))


def report(what, facts):
    """Prints the facts (name, found, expected) that are wrong; the exit code of the script."""
    wrong = [fact for fact in facts if fact[1] != fact[2]]
    for name, found, expected in wrong:
        print(f"{name}: {found}, expected {expected}")
    print(f"libreoffice: {len(facts)} facts of {what}, {len(wrong)} wrong")
    return 1 if wrong else 0
