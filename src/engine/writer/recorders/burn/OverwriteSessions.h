#pragma once

#include <QByteArray>
#include <QList>

#include <functional>

// Sessions on a medium without a table of contents of its own: DVD+RW, DVD-RAM, formatted
// DVD-RW, BD-RE and a file standing for a drive. The layout is the one xorriso and growisofs
// use, so each side reads the other's discs: the first session starts at block 32, each next
// one at the following multiple of 32, and the first 32 blocks hold a copy of the newest
// session's head whose volume size reaches from block 0 to that session's end, so that a
// mount sees the newest session; sessions beyond the head's reach are not the disc's (a
// cancelled write's remains). An ISO image written at block 0 alone is a single session.
// Pure; any thread.
namespace OverwriteSessions {
constexpr qint32 HeadBlocks = 32;
constexpr qint32 Alignment = 32;

struct Session {
    qint32 start = 0;
    qint32 blocks = 0;
    bool operator==(const Session &) const = default;
};

// Reads one 2048-byte block; false when it can't be read.
using BlockReader = std::function<bool(qint32 lba, char *block)>;

// The sessions in order, read from their volume descriptors; none on a blank medium.
QList<Session> scan(const BlockReader &read, qint32 capacityBlocks);
// Where the next session goes; -1 when the medium takes none (an image at block 0).
qint32 nextStart(const QList<Session> &sessions);
// Makes the head from the first HeadBlocks blocks of the session at `start` that holds
// `blocks` blocks: its volume descriptors then count the whole medium up to the session's end.
QByteArray head(QByteArray sessionHead, qint32 start, qint32 blocks);
// The volume space size of a primary volume descriptor block, or -1 if it is none.
qint32 volumeBlocks(const char *block);
} // namespace OverwriteSessions
