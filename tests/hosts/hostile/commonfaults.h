#pragma once

class QObject;
class Stage;

// An item view lets its application destroy the editors of its items.
bool isEditor(const QObject* object);

// Faults that applications do to themselves, sooner or later. Each is given the object whose handler runs.

// Structure
void destroySender(Stage& stage, QObject* sender);
void destroyParent(Stage& stage, QObject* sender);
void destroyWindow(Stage& stage, QObject* sender);
void destroyRandomWidget(Stage& stage, QObject* sender);
void destroyPopup(Stage& stage, QObject* sender);
void destroyLater(Stage& stage, QObject* sender);
// The editor of an item, if the object is one. At this key, or never.
void destroyEditor(Stage& stage, QObject* object, int key);
void reparentSender(Stage& stage, QObject* sender);
void doSceneTrick(Stage& stage, QObject* sender);

// State
void hideSender(Stage& stage, QObject* sender);
void disableSender(Stage& stage, QObject* sender);
void rename(Stage& stage, QObject* sender);
void stealFocus(Stage& stage, QObject* sender);
void clearFocus(Stage& stage, QObject* sender);
void grabMouse(Stage& stage, QObject* sender);
void grabKeyboard(Stage& stage, QObject* sender);
void warpCursor(Stage& stage, QObject* sender);
void removePostedEvents(Stage& stage, QObject* sender);
void postInputOfItsOwn(Stage& stage, QObject* sender);

// Windows
void hideWindow(Stage& stage, QObject* sender);
void disableWindow(Stage& stage, QObject* sender);
void moveWindow(Stage& stage, QObject* sender);
void resizeWindow(Stage& stage, QObject* sender);
void minimizeWindow(Stage& stage, QObject* sender);
void closeWindow(Stage& stage, QObject* sender);
void closeAllWindows(Stage& stage, QObject* sender);
void retitle(Stage& stage, QObject* sender);
void openPopup(Stage& stage, QObject* sender);
void openSecondWindow(Stage& stage, QObject* sender);
void openModalWindow(Stage& stage, QObject* sender);

// Time and the outer world
void runDialog(Stage& stage, QObject* sender);
void runMenu(Stage& stage, QObject* sender);
void runEventLoop(Stage& stage, QObject* sender);
void handleEvents(Stage& stage, QObject* sender);
void writeFile(Stage& stage, QObject* sender);
void beBusy(Stage& stage, QObject* sender);
void beBusyForLong(Stage& stage, QObject* sender);
void quit(Stage& stage, QObject* sender);
void retireAgent(Stage& stage, QObject* sender);
