#pragma once

// Registers the disc tools' windows and commands with the frame's registry.
void registerDiscToolWindows();
