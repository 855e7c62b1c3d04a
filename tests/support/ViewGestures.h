#pragma once

#include <QtCore>

class QTreeWidget;
class QTreeWidgetItem;

// What a person does to a tree or list view, sent as the real events. UI thread.
namespace ViewGestures {

// As a file manager drops local paths.
void drop(QTreeWidget *view, const QStringList &paths);
// Within its own view, onto the row `onto`, or below the last row when null.
void move(QTreeWidgetItem *item, QTreeWidgetItem *onto);
// Typed into the item's editor and committed with Return.
void rename(QTreeWidgetItem *item, const QString &text);

} // namespace ViewGestures
