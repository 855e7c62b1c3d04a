#pragma once

// Registers the print preview and the frame's print commands with the form registry.
void registerPrintingWindows();
