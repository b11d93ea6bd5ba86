"""Desktops without a screen: a class and a script that start them, a program that keeps one alive; and pictures of screens."""
