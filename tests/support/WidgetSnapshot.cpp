#include "WidgetSnapshot.h"

#include <QtWidgets>
#include <memory>

namespace {
template<class... T> QHash<QByteArray, QWidget *(*)()> kinds() {
    return {{T::staticMetaObject.className(), [] { return static_cast<QWidget *>(new T); }}...};
}

// Fresh controls of each Qt kind, to tell what the program set from what Qt gives everyone.
QWidget *pristine(const QMetaObject *&meta) {
    static const auto makers =
        kinds<QWidget, QFrame, QLabel, QPushButton, QToolButton, QCheckBox, QRadioButton, QLineEdit,
              QComboBox, QSlider, QScrollBar, QSpinBox, QProgressBar, QGroupBox, QTreeWidget,
              QTreeView, QListWidget, QListView, QTableWidget, QTextBrowser, QTextEdit,
              QPlainTextEdit, QTabWidget, QTabBar, QStackedWidget, QSplitter, QScrollArea, QMdiArea,
              QMenuBar, QMenu, QToolBar, QStatusBar, QDialog, QMainWindow, QMdiSubWindow>();
    static QHash<QByteArray, std::shared_ptr<QWidget>> made;
    while (meta && !makers.contains(meta->className()))
        meta = meta->superClass();
    if (!meta)
        return nullptr;
    auto &one = made[meta->className()];
    if (!one)
        one.reset(makers.value(meta->className())());
    return one.get();
}

// Layout results, derived values and what only follows input focus or the screen.
bool unstable(const QByteArray &property) {
    static const QList<QByteArray> names =
        QByteArray(
            "pos size rect frameGeometry frameSize childrenRect childrenRegion normalGeometry x y "
            "width height sizeHint minimumSizeHint visible isActiveWindow focus underMouse "
            "minimized maximized fullScreen palette cursor locale icon windowIcon pixmap html "
            "markdown displayText cursorPosition selectedText hasSelectedText acceptableInput "
            "undoAvailable redoAvailable modified minimumWidth minimumHeight maximumWidth "
            "maximumHeight font frameRect documentTitle placeholderText currentText currentData "
            "sizeAdjustPolicy updatesEnabled")
            .split(' ');
    return names.contains(property);
}

QString shown(const QVariant &v, const QMetaProperty &p) {
    if (p.isEnumType())
        return QString::fromLatin1(p.isFlagType()
                                       ? p.enumerator().valueToKeys(v.toInt())
                                       : QByteArray(p.enumerator().valueToKey(v.toInt())));
    switch (v.metaType().id()) {
    case QMetaType::QSize: {
        const QSize s = v.toSize();
        return QStringLiteral("%1x%2").arg(s.width()).arg(s.height());
    }
    case QMetaType::QRect: {
        const QRect r = v.toRect();
        return QStringLiteral("%1,%2 %3x%4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
    }
    case QMetaType::QSizePolicy: {
        const auto s = v.value<QSizePolicy>();
        return QStringLiteral("%1/%2").arg(s.horizontalPolicy()).arg(s.verticalPolicy());
    }
    case QMetaType::QKeySequence:
        return v.value<QKeySequence>().toString();
    default:
        return v.canConvert<QString>() ? v.toString() : QString();
    }
}

bool inLayout(const QWidget *w) {
    const QWidget *parent = w->parentWidget();
    return parent && parent->layout() && parent->layout()->indexOf(w) >= 0;
}

void actions(QStringList &out, const QList<QAction *> &list, const QString &indent) {
    for (const QAction *a : list) {
        QString line = indent + (a->isSeparator() ? QStringLiteral("---") : a->text());
        if (!a->shortcut().isEmpty())
            line += QStringLiteral(" [%1]").arg(a->shortcut().toString());
        if (a->isCheckable())
            line += a->isChecked() ? QStringLiteral(" (checked)") : QStringLiteral(" (unchecked)");
        if (!a->isEnabled())
            line += QStringLiteral(" (greyed)");
        if (!a->isVisible())
            line += QStringLiteral(" (hidden)");
        out.append(line);
        if (a->menu())
            actions(out, a->menu()->actions(), indent + QStringLiteral("  "));
    }
}

void items(QStringList &out, const QWidget *w) {
    auto row = [](const QTreeWidgetItem *item) {
        QStringList cells;
        for (int c = 0; c < item->columnCount(); ++c)
            cells.append(item->text(c));
        return cells.join(u'|');
    };
    if (auto *combo = qobject_cast<const QComboBox *>(w)) {
        for (int i = 0; i < combo->count(); ++i)
            out.append(QStringLiteral("  - ") + combo->itemText(i));
    } else if (auto *list = qobject_cast<const QListWidget *>(w)) {
        for (int i = 0; i < list->count(); ++i)
            out.append(QStringLiteral("  - ") + list->item(i)->text());
    } else if (auto *tree = qobject_cast<const QTreeWidget *>(w)) {
        out.append(QStringLiteral("  header ") + row(tree->headerItem()));
        for (int c = 0; c < tree->columnCount(); ++c)
            if (tree->header()->sectionResizeMode(c) == QHeaderView::Interactive)
                out.append(QStringLiteral("  column %1 width %2").arg(c).arg(tree->columnWidth(c)));
        if (tree->isSortingEnabled())
            out.append(QStringLiteral("  sorted by %1 %2")
                           .arg(tree->header()->sortIndicatorSection())
                           .arg(tree->header()->sortIndicatorOrder()));
        for (QTreeWidgetItemIterator it(const_cast<QTreeWidget *>(tree)); *it; ++it) {
            int depth = 0;
            for (const QTreeWidgetItem *p = (*it)->parent(); p; p = p->parent())
                ++depth;
            out.append(QString(2 * depth + 2, u' ') + QStringLiteral("- ") + row(*it));
        }
    } else if (auto *tabs = qobject_cast<const QTabWidget *>(w)) {
        for (int i = 0; i < tabs->count(); ++i)
            out.append(QStringLiteral("  tab ") + tabs->tabText(i) +
                       (tabs->isTabEnabled(i) ? QString() : QStringLiteral(" (greyed)")));
    } else if (qobject_cast<const QMenuBar *>(w) || qobject_cast<const QToolBar *>(w) ||
               qobject_cast<const QMenu *>(w)) {
        actions(out, w->actions(), QStringLiteral("  "));
    }
}

void control(QStringList &out, const QWidget *w, const QWidget *window, const QString &label) {
    const QMetaObject *meta = w->metaObject();
    const QWidget *fresh = pristine(meta);
    QString line =
        label + QStringLiteral(" (%1)").arg(QString::fromLatin1(meta ? meta->className() : "?"));
    // A hidden control keeps wherever it was last put, which nobody sees.
    const bool hidden = w != window && !w->isVisibleTo(window);
    if (hidden)
        line += QStringLiteral(" hidden");
    for (int i = 0; meta && fresh && i < meta->propertyCount(); ++i) {
        const QMetaProperty p = meta->property(i);
        const QByteArray name = p.name();
        if (unstable(name) || name == "objectName" ||
            (name == "geometry" && (hidden || w == window || inLayout(w))))
            continue;
        // Empty: a value its enum has no name for, as when Qt takes Tab out of a radio button's
        // focus policy once its group has had the focus.
        QString value = shown(p.read(w), p);
        if (value.isEmpty() || value == shown(p.read(fresh), p))
            continue;
        // A page of text stands as its start, its length and a checksum.
        if (value.size() > 160)
            value = QStringLiteral("%1... (%2 characters, %3)")
                        .arg(value.left(60).simplified())
                        .arg(value.size())
                        .arg(QString::fromLatin1(
                            QCryptographicHash::hash(value.toUtf8(), QCryptographicHash::Md5)
                                .toHex()
                                .left(12)));
        line += QStringLiteral(" %1=%2").arg(QString::fromLatin1(name), value);
    }
    out.append(line);
    items(out, w);
}

// Controls that are one thing to the user: their parts are Qt's, not the program's. A plain
// scroll area is only a window onto the program's own controls.
bool whole(const QWidget *w) {
    return (qobject_cast<const QAbstractScrollArea *>(w) &&
            !qobject_cast<const QScrollArea *>(w)) ||
           qobject_cast<const QComboBox *>(w) || qobject_cast<const QAbstractSpinBox *>(w) ||
           qobject_cast<const QTabBar *>(w) || qobject_cast<const QAbstractButton *>(w) ||
           qobject_cast<const QMenuBar *>(w) || qobject_cast<const QToolBar *>(w) ||
           qobject_cast<const QLineEdit *>(w) || qobject_cast<const QAbstractSlider *>(w) ||
           qobject_cast<const QProgressBar *>(w) || qobject_cast<const QMenu *>(w) ||
           qobject_cast<const QLabel *>(w);
}

// Unnamed controls are called by their place: the parent's label, the kind and its number.
void walk(QStringList &out, const QWidget *parent, const QWidget *window, const QString &label) {
    QHash<QByteArray, int> seen;
    for (const QObject *child : parent->children()) {
        const auto *w = qobject_cast<const QWidget *>(child);
        if (!w || w->isWindow())
            continue;
        QString name = w->objectName();
        if (name.startsWith(u"qt_")) {
            if (!whole(w))
                walk(out, w, window, label);
            continue;
        }
        if (name.isEmpty()) {
            const QByteArray kind = w->metaObject()->className();
            name = label + u'/' + QString::fromLatin1(kind) + QString::number(++seen[kind]);
        }
        control(out, w, window, name);
        if (!whole(w))
            walk(out, w, window, name);
    }
}
} // namespace

namespace WidgetSnapshot {

QString describe(const QWidget *window) {
    QStringList out;
    const QString name = window->objectName().isEmpty()
                             ? QString::fromLatin1(window->metaObject()->className())
                             : window->objectName();
    control(out, window, window, name);
    walk(out, window, window, name);
    return out.join(u'\n') + u'\n';
}

QString differences(const QWidget *window, const QString &name,
                    const QList<std::pair<QRegularExpression, QString>> &scrub) {
    QString text = describe(window);
    for (const auto &[from, to] : scrub)
        text.replace(from, to);
    text.replace(QStringLiteral(TESSALY_SOURCE_DIR), QStringLiteral("SOURCE"));
    text.replace(QDir::homePath(), QStringLiteral("HOME"));
    // Names made from the clock, as a new image's volume name is.
    text.replace(QRegularExpression(QStringLiteral("\\b20\\d{6}_\\d{4}\\b")),
                 QStringLiteral("YYYYMMDD_HHMM"));
    QFile file(QStringLiteral(TESSALY_SNAPSHOT_DIR "/") + name + QStringLiteral(".txt"));
    if (qEnvironmentVariableIntValue("TESSALY_UPDATE_SNAPSHOTS")) {
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return QStringLiteral("cannot write ") + file.fileName();
        file.write(text.toUtf8());
        return {};
    }
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("no snapshot ") + file.fileName();
    const QStringList want = QString::fromUtf8(file.readAll()).split(u'\n');
    const QStringList got = text.split(u'\n');
    QStringList diff;
    for (const QString &line : want)
        if (!got.contains(line))
            diff.append(QStringLiteral("- ") + line);
    for (const QString &line : got)
        if (!want.contains(line))
            diff.append(QStringLiteral("+ ") + line);
    if (diff.isEmpty() && want != got)
        diff.append(QStringLiteral("(the same lines in another order)"));
    return diff.join(u'\n');
}

} // namespace WidgetSnapshot
