#include "OverwriteSessions.h"

#include <cstring>

namespace {
constexpr int Block = 2048;
constexpr qint32 DescriptorStart = 16;
constexpr int MaxSessions = 4096;

bool isDescriptor(const char *b) {
    return std::memcmp(b + 1, "CD001", 5) == 0 && b[6] == 1;
}

qint32 le32(const char *p) {
    const auto *u = reinterpret_cast<const unsigned char *>(p);
    return qint32(quint32(u[0]) | quint32(u[1]) << 8 | quint32(u[2]) << 16 | quint32(u[3]) << 24);
}

void putBoth32(char *p, quint32 v) {
    for (int i = 0; i < 4; ++i) {
        p[i] = char(v >> (8 * i));
        p[7 - i] = char(v >> (8 * i));
    }
}

qint32 alignUp(qint64 v) {
    return qint32((v + OverwriteSessions::Alignment - 1) / OverwriteSessions::Alignment *
                  OverwriteSessions::Alignment);
}
} // namespace

qint32 OverwriteSessions::volumeBlocks(const char *block) {
    if (!isDescriptor(block) || static_cast<unsigned char>(block[0]) != 1)
        return -1;
    const qint32 v = le32(block + 80);
    return v > 0 ? v : -1;
}

QList<OverwriteSessions::Session> OverwriteSessions::scan(const BlockReader &read,
                                                          qint32 capacityBlocks) {
    QList<Session> sessions;
    char block[Block];
    // The head decides: a session counts only when the head reaches over it, so that what a
    // cancelled or failed write left behind its last session is free space again.
    if (!read(DescriptorStart, block) || volumeBlocks(block) < 0)
        return sessions; // blank
    const qint64 end = volumeBlocks(block);
    if (!read(HeadBlocks + DescriptorStart, block) || volumeBlocks(block) < 0 ||
        end <= HeadBlocks) {
        // An image written at block 0 on its own.
        sessions.append({0, qint32(end)});
        return sessions;
    }
    for (qint64 start = HeadBlocks; start < end && sessions.size() < MaxSessions;) {
        if (start + DescriptorStart >= capacityBlocks ||
            !read(qint32(start) + DescriptorStart, block))
            break;
        const qint32 blocks = volumeBlocks(block);
        if (blocks < 0 || start + blocks > end)
            break;
        sessions.append({qint32(start), blocks});
        start = alignUp(start + blocks);
    }
    return sessions;
}

qint32 OverwriteSessions::nextStart(const QList<Session> &sessions) {
    if (sessions.isEmpty())
        return HeadBlocks;
    if (sessions.first().start == 0)
        return -1;
    return alignUp(qint64(sessions.last().start) + sessions.last().blocks);
}

QByteArray OverwriteSessions::head(QByteArray sessionHead, qint32 start, qint32 blocks) {
    sessionHead.resize(HeadBlocks * Block, '\0');
    // Every volume descriptor up to the terminator counts the volume from block 0.
    for (qint32 b = DescriptorStart; b < HeadBlocks; ++b) {
        char *d = sessionHead.data() + b * Block;
        if (std::memcmp(d + 1, "CD001", 5) != 0)
            break;
        const auto type = static_cast<unsigned char>(d[0]);
        if (type == 255)
            break;
        if (type == 1 || type == 2)
            putBoth32(d + 80, quint32(start) + quint32(blocks));
    }
    return sessionHead;
}
