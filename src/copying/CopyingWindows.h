#pragma once

// Registers the disc copy, image burner and data disc ripper windows with the frame.
void registerCopyingWindows();
