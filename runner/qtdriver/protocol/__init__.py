"""What travels between a test and an agent: lines, their text forms, the connection, the server."""
