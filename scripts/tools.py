"""The class vesk: the user's way into the nodes, from the shelf named "vesk"."""

import maya.cmds as mc


class vesk(object):
    """Has no state: every call is made on a fresh instance."""

    def updateShelfMenus(self):
        """Attaches the pop-up menus to the buttons of the shelf."""
        if not mc.shelfLayout("vesk", ex=True) and not mc.about(batch=True):
            print("vesk:updateShelfMenus:warning: Vesk shelf does not exist.")
            return
