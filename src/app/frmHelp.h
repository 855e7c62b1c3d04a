#pragma once

#include <QMap>
#include <QPointer>
#include <QWidget>

class QLineEdit;
class QListWidget;
class QTabWidget;
class QTextBrowser;
class QTreeWidget;

// The help window: the program's help text with its contents and its index beside it. One
// window for the run, brought to the front at each request. On the UI thread.
class frmHelp : public QWidget {
    Q_OBJECT
public:
    enum Request { Contents, Index, Context };

    // Opens the help file (the program's help name; an empty name shows nothing) at the
    // contents, the index or the topic of a context number.
    static void showHelp(const QString &helpFile, Request request, qint32 contextId,
                         QWidget *owner);
    static frmHelp *instance();
    // F1 anywhere in the program: the help at the topic of the window that has the focus (a
    // topic's anchor is the window's name), else at the start. Installed once on the frame.
    static void installHelpKey(QWidget *frame, const QString &helpFile);
    static void showHelpFor(QWidget *focus, const QString &helpFile, QWidget *owner);

    explicit frmHelp(QWidget *owner);

    QTabWidget *tabNavigation = nullptr;
    QTreeWidget *tvwContents = nullptr;
    QLineEdit *txtIndex = nullptr;
    QListWidget *lstIndex = nullptr;
    QTextBrowser *txtTopic = nullptr;

    // Loads a help page; false when there is none.
    bool load(const QString &htmlFile);
    QString loadedFile() const { return m_file; }
    // The anchor the topic view stands at, empty for the top.
    QString currentAnchor() const { return m_anchor; }
    void showAnchor(const QString &anchor);
    // The index keywords, sorted, with the anchor each leads to.
    QMap<QString, QString> indexEntries() const { return m_index; }
    bool hasAnchor(const QString &anchor) const { return m_anchors.contains(anchor); }

private:
    void fillIndex(const QString &filter);

    QString m_file;
    QString m_anchor;
    QMap<QString, QString> m_index;
    QStringList m_anchors;
};
