#pragma once

#include "ReadBack.h"

#include <QtCore>

// Reads an ISO 9660 session back with tools nobody here wrote, so that a test compares what
// each of them finds with what it put in. A tree maps each path below the root ("dir/a.txt") to
// its contents; a folder maps to "<dir>" and a symbolic link to "-> " and its target. A tool
// that refuses the session gives one entry "<error>" with its message.
namespace DiscReadBack {
using Tree = QMap<QString, QByteArray>;
using Tool = ReadBack::Tool;

// With Rock Ridge names; bsdtar reads only a session at block 0.
Tree read(Tool tool, const QString &image, qint32 startBlock = 0);
QString name(Tool tool);
// Entries "path=contents", "path/" for a folder, "path=-> target" for a link.
Tree treeOf(const QStringList &entries);
// Fails the running test unless xorriso, isoinfo and bsdtar all read the session at block 0 of
// `image` as `expected`; isoinfo, which knows no relocated folders, as `isoinfoSees` if given.
void expectEverywhere(const QString &image, const Tree &expected, const Tree &isoinfoSees = {});
} // namespace DiscReadBack
