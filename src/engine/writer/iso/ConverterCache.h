#pragma once

#include <QtGlobal>

// libisofs opens and closes a character converter for every name it writes, and glibc's
// iconv_open is costly: on an image of many files it is a third of the layout. This program
// therefore defines iconv_open and iconv_close itself, which the dynamic linker lets win over the
// C library's for every library loaded: a closed converter is reset to its first state and kept
// for the next open of the same pair of character sets. Any thread.
namespace ConverterCache {
// Links the cache into the program (call once before libisofs starts); `enabled` false makes
// every open and close go straight to the C library (for measuring the difference).
void install(bool enabled = true);
// Opens that went to the C library, and opens answered from the cache, since the start.
quint64 realOpens();
quint64 reusedOpens();
} // namespace ConverterCache
