"""The Model Context Protocol: language models start applications, look at them, use them, and save tests."""
