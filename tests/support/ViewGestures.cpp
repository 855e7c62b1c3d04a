#include "ViewGestures.h"
#include "Waits.h"

#include <QtTest>
#include <QtWidgets>
#include <memory>

namespace ViewGestures {

void drop(QTreeWidget *view, const QStringList &paths) {
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(QUrl::fromLocalFile(path));
    QMimeData mime;
    mime.setUrls(urls);
    const QPointF at(view->viewport()->width() / 2.0, view->viewport()->height() - 2.0);
    QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &enter);
    QDropEvent dropped(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &dropped);
    Waits::settle();
}

void move(QTreeWidgetItem *item, QTreeWidgetItem *onto) {
    QTreeWidget *view = item->treeWidget();
    view->setCurrentItem(item);
    std::unique_ptr<QMimeData> mime(
        view->model()->mimeData({view->indexFromItem(item), view->indexFromItem(item, 1)}));
    const QRect last = view->visualItemRect(view->topLevelItem(view->topLevelItemCount() - 1));
    const QPointF at = onto ? QPointF(view->visualItemRect(onto).center())
                            : QPointF(last.center().x(), last.bottom() + 4);
    QDragEnterEvent enter(at.toPoint(), Qt::MoveAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &enter);
    QDropEvent dropped(at, Qt::MoveAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &dropped);
    Waits::settle();
}

void rename(QTreeWidgetItem *item, const QString &text) {
    QTreeWidget *view = item->treeWidget();
    view->setCurrentItem(item);
    view->editItem(item, 0);
    Waits::settle();
    if (auto *editor = view->viewport()->findChild<QLineEdit *>()) {
        editor->setText(text);
        QTest::keyClick(editor, Qt::Key_Return);
    }
    Waits::settle();
}

} // namespace ViewGestures
