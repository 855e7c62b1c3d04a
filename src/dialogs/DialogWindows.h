#pragma once

// Registers the about box, the credits, the links window and the licence with the frame's
// registry, once at start.
void registerDialogWindows();
