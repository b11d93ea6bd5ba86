"""Finding windows and widgets: listings, trees, names, paths, and explanations where nothing is found."""
