#pragma once

// Tells the frame's registry how to open the windows of the compilation library ("frmData",
// "frmLabels"). Called once before the program runs:
// registrations in static initialisers would be dropped with an unused object file.
void registerCompilationWindows();
