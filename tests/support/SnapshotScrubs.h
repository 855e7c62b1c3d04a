#pragma once

#include <QtCore>

// What a window's snapshot must not pin because it changes from run to run: a temporary
// folder's name and the dates of files made by the test.
namespace SnapshotScrubs {

using List = QList<std::pair<QRegularExpression, QString>>;

inline List folder(const QString &path, const QString &word = QStringLiteral("DIR")) {
    return {{QRegularExpression(QRegularExpression::escape(path)), word}};
}

inline List fileDates() {
    return {{QRegularExpression(QStringLiteral("\\b\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\d\\b")),
             QStringLiteral("DATE")}};
}

} // namespace SnapshotScrubs
