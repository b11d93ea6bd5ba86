"""The objects of a test: the driver, applications, windows, widgets, menus, and conditions of them."""
