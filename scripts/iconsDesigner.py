"""iconsDesigner: draws and edits the icons of icons.cfg."""


def Gui(force=False):
    """Opens the designer's window."""
    print("iconsDesigner:Gui:warning: The designer window is not there yet.")
