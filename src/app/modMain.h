#pragma once

#include <QString>

// The entry point of the program and its single-instance test. On the UI thread.
namespace modMain {

// Start-up: stops if the folder is already in use, else shows the splash and sets up state.
void Main();

// True when Main went on to show the splash (no other instance was running).
bool Started();

// Sets up the platform's common controls; always available with the toolkit.
bool InitCommonControlsVB();

// The application's help file, as Main set it.
QString HelpFile();

// Gives the instance lock back (the end of a run, and the tests that start many times).
void ReleaseInstance();

} // namespace modMain
