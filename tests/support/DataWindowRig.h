#pragma once

#include "ScriptedAnswers.h"
#include "TestEnvironment.h"

#include <QtCore>
#include <memory>

class QTreeWidget;
class QTreeWidgetItem;
class frmData;
class mdiMain;

// A started frame with a blank CD-R 80 in the Image Recorder and a data compilation opened as
// the disc type box opens it, plus a folder of source files the test fills.
class DataWindowRig {
public:
    // `disc` is the descriptor of the disc in the tray, a blank CD-R 80 when empty; its data
    // file is made sparse at the size of `dataBlocks`.
    explicit DataWindowRig(const QByteArray &disc = QByteArray(), qint64 dataBlocks = 0);
    ~DataWindowRig();
    bool started() const { return m_started; }
    QString appFolder() const { return m_env.appFolder(); }
    mdiMain *frame() const;
    frmData *data() const;
    ScriptedAnswers &answers() { return *m_answers; }
    // Files under the rig's source folder; their absolute paths.
    QString source(const QString &relative, const QByteArray &bytes = "x");
    QString sparseSource(const QString &relative, qint64 megabytes);
    void drop(QTreeWidget *view, const QStringList &paths);
    void rename(QTreeWidgetItem *item, const QString &text);
    // In tree order.
    QStringList nodeKeys() const;
    QStringList rowKeys() const;
    QString panel(const QString &key) const;
    // Since the last call, as "title|prompt".
    QStringList takeBoxes();

private:
    // The environment first: it installs the fallback answerer the script then replaces.
    TestEnvironment m_env;
    std::unique_ptr<ScriptedAnswers> m_answers;
    QTemporaryDir m_sources;
    bool m_started = false;
};
