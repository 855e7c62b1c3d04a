#pragma once

#include <QByteArray>
#include <QString>

// What a disc's volume descriptors say about it: the label, the kind of file system and the
// 32-bit serial number a desktop shows for it. Built from bytes read off the disc, so it is
// right for a disc no one mounted. Any thread.
struct DiscVolume {
    QString label;
    QString fileSystem; // empty when the bytes hold no file system known here
    qint32 serial = 0;  // 0 when there is none

    // The volume descriptor set as it lies from block 16 of a session on: whole 2048-byte
    // blocks, as many as were read. Lengths are bounded by the bytes given.
    static DiscVolume fromDescriptors(const QByteArray &blocks);
    // The label and file system an audio disc is known by.
    static DiscVolume audioDisc();
    // The serial number of a primary volume descriptor: its bytes summed column by column in
    // four 8-bit accumulators, the first column in the top byte.
    static qint32 serialOf(const QByteArray &descriptor);
};
