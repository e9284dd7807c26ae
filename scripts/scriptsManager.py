"""scriptsManager: finds and runs the scripts of the user's folders."""


def Gui():
    """Opens the manager's window."""
    print("scriptsManager:Gui:warning: The manager window is not there yet.")
