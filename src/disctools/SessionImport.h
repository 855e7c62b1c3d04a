#pragma once

struct WindowContext;

// The frame's command that brings the disc's last session into the data compilation.
namespace SessionImport {
void ToolMenuImportPrevious(const WindowContext &context);
} // namespace SessionImport
