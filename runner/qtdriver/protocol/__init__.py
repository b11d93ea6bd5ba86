"""The conversation with an agent: its text forms, the lines that carry it, the connection, the server."""
