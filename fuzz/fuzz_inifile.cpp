#include "base/IniFile.h"

#include <cstddef>
#include <cstdint>

// Any bytes as an options file: reading must find or miss keys without fault, and a write must
// keep every byte outside the line it changes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QByteArray text(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString section = QStringLiteral("General");
    const QString key = QStringLiteral("Maximized Value");
    IniFile::value(text, section, key, QStringLiteral("0"));
    const QByteArray written = IniFile::withValue(text, section, key, QStringLiteral("2"));
    if (!text.contains('\0') &&
        IniFile::value(written, section, key, QString()) != QStringLiteral("2"))
        __builtin_trap();
    return 0;
}
