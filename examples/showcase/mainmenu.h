#pragma once

class QMainWindow;

/// Gives \a window its menu bar and a tool bar with some of the actions. They do nothing yet: find them by
/// their names.
void addMainMenu(QMainWindow& window);
