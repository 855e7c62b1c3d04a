#include "DataWindowRig.h"
#include "Fixtures.h"
#include "ViewGestures.h"
#include "Waits.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "compilation/frmData.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedStatusBar.h"

#include <QtWidgets>

DataWindowRig::DataWindowRig(const QByteArray &disc, qint64 dataBlocks)
    : m_answers(std::make_unique<ScriptedAnswers>()) {
    m_env.writeFile(QStringLiteral("Image Recorder/Tray/blank.iso"), QByteArray());
    if (dataBlocks > 0) {
        QFile data(m_env.appFolder() + QStringLiteral("/Image Recorder/Tray/blank.iso"));
        if (data.open(QIODevice::ReadWrite))
            data.resize(dataBlocks * 2048);
    }
    m_env.writeFile(QStringLiteral("Image Recorder/Tray/blank.tdisc"),
                    !disc.isEmpty() ? disc
                                    : QByteArray("[Tessaly Disc]\nVersion=1\nMedium=CD-R 80\n"
                                                 "Data=blank.iso\nFinalized=0\nSessions=0\n"));
    m_started = m_env.startProgram();
    if (!m_started)
        return;
    FormRegistry::open(QStringLiteral("frmData"), frame());
    FormRegistry::open(QStringLiteral("ResetImage"), frame());
    Waits::settle();
    m_answers->boxes.clear();
}

DataWindowRig::~DataWindowRig() {
    m_env.stopProgram();
    DefaultInstance<frmData>::unload();
    Waits::settle();
}

mdiMain *DataWindowRig::frame() const {
    return DefaultInstance<mdiMain>::peek();
}

frmData *DataWindowRig::data() const {
    return DefaultInstance<frmData>::peek();
}

QString DataWindowRig::source(const QString &relative, const QByteArray &bytes) {
    const QString path = m_sources.filePath(relative);
    Fixtures::writeFile(path, bytes);
    return path;
}

QString DataWindowRig::sparseSource(const QString &relative, qint64 megabytes) {
    const QString path = source(relative, QByteArray());
    QFile f(path);
    if (f.open(QIODevice::ReadWrite))
        f.resize(megabytes * 1024 * 1024);
    return path;
}

void DataWindowRig::drop(QTreeWidget *view, const QStringList &paths) {
    ViewGestures::drop(view, paths);
}

void DataWindowRig::rename(QTreeWidgetItem *item, const QString &text) {
    ViewGestures::rename(item, text);
}

QStringList DataWindowRig::nodeKeys() const {
    QStringList keys;
    for (QTreeWidgetItemIterator it(data()->tvwDirectories); *it; ++it)
        keys.append(frmData::keyOf(*it));
    return keys;
}

QStringList DataWindowRig::rowKeys() const {
    QStringList keys;
    for (int i = 0; i < data()->lvwImageFiles->topLevelItemCount(); ++i)
        keys.append(frmData::keyOf(data()->lvwImageFiles->topLevelItem(i)));
    return keys;
}

QString DataWindowRig::panel(const QString &key) const {
    return frame()->smartStatusBar->Item(key)->Text();
}

QStringList DataWindowRig::takeBoxes() {
    QStringList asked;
    for (const MessageBoxService::Request &r : m_answers->boxes)
        asked.append(r.title + u'|' + r.prompt);
    m_answers->boxes.clear();
    return asked;
}
