"""What the author of a test holds: the driver, applications, windows, widgets, menus, and conditions of them."""
