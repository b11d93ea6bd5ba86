"""What a run leaves for people to look at: the recorded steps of a test, and a page that shows them."""
