#pragma once

// Lets time pass for Qt's timers in this process.
void advanceClock(int milliseconds);
