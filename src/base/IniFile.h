#pragma once

#include <QByteArray>
#include <QString>

// The sectioned key-value text of the options files, read and written key by key. Section and
// key names match without regard to case; the first matching section and key win. Writing
// replaces one line, or adds the key at the end of its section, or the section at the end of
// the text; every other byte stays as it was. Any bytes at all are accepted.
class IniFile {
public:
    // The value of the key, or `defaultValue` when the section or the key is missing, or when
    // the text is binary (it holds NUL bytes).
    static QString value(const QByteArray &text, const QString &section, const QString &key,
                         const QString &defaultValue);
    // The text with the key set to `value` (written as given, line breaks included).
    static QByteArray withValue(const QByteArray &text, const QString &section, const QString &key,
                                const QString &value);

    // The same on a file. A file that can't be read counts as empty; a write goes to a
    // temporary file that replaces the old one only when complete. Returns false on failure.
    static QString read(const QString &path, const QString &section, const QString &key,
                        const QString &defaultValue);
    static bool write(const QString &path, const QString &section, const QString &key,
                      const QString &value);
};
