#pragma once

#include <QtCore>

class QWidget;

// A window's named controls written out as text: every property the program set that a fresh
// control of the same Qt kind does not have, whether the control is shown, the entries of lists,
// menus and toolbars. Tests compare it with a reviewed file under tests/snapshots/, so a changed
// caption, size, state or entry shows as a line of difference.
namespace WidgetSnapshot {

QString describe(const QWidget *window);
// What differs from tests/snapshots/<name>.txt, empty when nothing does. With
// TESSALY_UPDATE_SNAPSHOTS=1 in the environment the file is written instead, for review.
// What `scrub` matches is replaced in the text first (a temporary folder by a fixed word).
QString differences(const QWidget *window, const QString &name,
                    const QList<std::pair<QRegularExpression, QString>> &scrub = {});

} // namespace WidgetSnapshot
