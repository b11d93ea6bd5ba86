#pragma once

class QObject;
class Recorder;

/// Has \a recorder told from now on what happens to \a root and to every widget, action and model below it.
void watchAll(QObject* root, const Recorder& recorder);
