"""Finding windows and widgets: listings, trees, names, paths, and explanations when nothing is found."""
