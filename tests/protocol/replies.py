"""Replies as the tests expect them."""


def error(message):
    """The reply to a command that an exception with this message has ended."""
    return "8,Exception : " + message
