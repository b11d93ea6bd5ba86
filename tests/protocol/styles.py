"""The styles that tests of widgets run in: the plain one, and one that draws and places parts of widgets otherwise."""

from hostapp import QT

STYLES = ["windows", "plastique" if QT == 4 else "fusion"]
