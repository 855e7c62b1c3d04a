#pragma once

// Makes the MP3 tool and the wave normaliser reachable from the frame's commands.
void registerToolWindows();
