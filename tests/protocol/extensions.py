"""Requests of extensions as tests write them."""


def extension(name, *texts):
    """The request: the name and each text as UTF-8 in hexadecimal."""
    return ",".join([name, *(hexadecimal(text) for text in texts)])


def hexadecimal(text):
    """The text as a section of a request."""
    return text.encode("utf-8").hex()
