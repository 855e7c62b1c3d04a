#pragma once

// Makes the ripper window reachable from the frame's commands.
void registerRippingWindows();
