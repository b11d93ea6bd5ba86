"""The objects that a test uses: the driver, applications, windows, widgets, menus, and conditions of them."""
