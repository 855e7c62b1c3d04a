#pragma once

#include <QStringList>

class QTreeWidget;
class QTreeWidgetItem;

// What a person does to a tree or list view, sent as the real events. UI thread.
namespace ViewGestures {

// Drops local paths on the viewport of a view as a file manager does.
void drop(QTreeWidget *view, const QStringList &paths);
// Drags a row within its own view and drops it on the row `onto`, or below the last row.
void move(QTreeWidgetItem *item, QTreeWidgetItem *onto);
// Types a new label into the editor of an item and commits it with Return.
void rename(QTreeWidgetItem *item, const QString &text);

} // namespace ViewGestures
