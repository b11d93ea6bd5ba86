"""`qtdriver init`: a folder with tests for one application."""
