#pragma once

class CDRipperX;
struct WindowContext;

// The frame's ripper engine, made on first use and owned by the frame.
CDRipperX *TessalyRipper(const WindowContext &context);

// Makes the ripper window reachable from the frame's commands.
void registerRippingWindows();
