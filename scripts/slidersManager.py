"""slidersManager: sets of slider controls for animators."""


def Gui(force=False):
    """Opens the manager's window."""
    print("slidersManager:Gui:warning: The manager window is not there yet.")
