"""What there is in an application: its windows, their widgets, the names and paths that find them."""
