"""Steps that were made with applications, as the code of a test."""
