#include "EncodedFile.h"

#include <QFile>

#include <cerrno>
#include <cstring>

bool EncodedFile::fail(const char *what) {
    m_error = QStringLiteral("%1 %2: %3")
                  .arg(QLatin1String(what), m_path, QString::fromLocal8Bit(std::strerror(errno)));
    return false;
}

bool EncodedFile::open(const QString &path) {
    remove();
    m_path = path;
    m_file.reset(std::fopen(QFile::encodeName(path).constData(), "wb"));
    if (!m_file)
        return fail("Cannot create");
    return true;
}

bool EncodedFile::write(const void *data, size_t bytes) {
    if (!m_file)
        return false;
    if (bytes && std::fwrite(data, 1, bytes, m_file.get()) != bytes)
        return fail("Cannot write");
    return true;
}

bool EncodedFile::writeAt(long offset, const void *data, size_t bytes) {
    if (!m_file)
        return false;
    if (std::fseek(m_file.get(), offset, SEEK_SET) != 0 || !write(data, bytes))
        return fail("Cannot write");
    return std::fseek(m_file.get(), 0, SEEK_END) == 0;
}

bool EncodedFile::close() {
    if (!m_file)
        return false;
    if (std::fclose(m_file.release()) != 0) {
        fail("Cannot close");
        QFile::remove(m_path);
        return false;
    }
    return true;
}

void EncodedFile::remove() {
    if (!m_file)
        return;
    m_file.reset();
    QFile::remove(m_path);
}
