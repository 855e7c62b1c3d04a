#pragma once

// Registers the disc and recorder information windows, the erase dialog and the list of
// supported drives with the frame's commands.
void registerDiscInfoWindows();
