"""What is recorded of a test: its steps, pictures of the screen, the widgets; and the trace that keeps them."""
