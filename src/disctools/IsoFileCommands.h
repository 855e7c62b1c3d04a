#pragma once

class QIODevice;
class QString;
struct WindowContext;

// The frame's two commands for ISO files: the data compilation saved as one, and one written
// to a blank disc.
namespace IsoFileCommands {
void ToolMenuSaveAsIso(const WindowContext &context);
void ToolMenuWriteIso(const WindowContext &context);

// The name the save box proposes: the date and time to the minute, "202611240613.iso".
QString proposedFileName();
// Whether the bytes hold an ISO 9660 volume: a primary volume descriptor at block 16.
bool isIso9660(QIODevice &device);
} // namespace IsoFileCommands
