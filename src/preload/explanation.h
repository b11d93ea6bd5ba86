#pragma once

namespace preload {

// Says on the standard error why no agent is started, if the environment variable QTDRIVER_EXPLAIN asks for it, and not
// the same twice in a row. Otherwise applications get no output from here.
void explain(const char* reason, const char* detail = "");

// Has explain() call a function from now on, and write nothing.
void explainTo(void (*listener)(const char* reason, const char* detail));

} // namespace preload
