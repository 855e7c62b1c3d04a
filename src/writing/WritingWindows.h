#pragma once

// Adds the windows of the writing subsystem to the frame's registry. Called once at start,
// before the frame is made; static initialisers of a static library would be dropped.
void registerWritingWindows();
