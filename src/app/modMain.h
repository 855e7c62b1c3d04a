#pragma once

#include <QString>

// The entry point of the program and its single-instance test. On the UI thread.
namespace modMain {

// Refuses a second instance, shows the splash, sets the help file and the globals, returns.
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
