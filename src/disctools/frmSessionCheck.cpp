#include "frmSessionCheck.h"
#include "app/modGlobals.h"
#include "base/Conversions.h"
#include "base/Format.h"
#include "diagnostics/ErrorTrap.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <vector>

namespace {
// The pictures of the session tree, from the desktop's own icon set.
QIcon picture(const QString &key) {
    QStyle *style = QApplication::style();
    if (key == u"CDROM")
        return style->standardIcon(QStyle::SP_DriveCDIcon);
    if (key == u"SESOPEN")
        return style->standardIcon(QStyle::SP_DirOpenIcon);
    if (key == u"SESCLOSED")
        return style->standardIcon(QStyle::SP_DirClosedIcon);
    if (key == u"TRACKOPEN")
        return style->standardIcon(QStyle::SP_FileDialogNewFolder);
    return style->standardIcon(QStyle::SP_FileIcon);
}
} // namespace

frmSessionCheck::frmSessionCheck(const WindowContext &context)
    : QDialog(context.frame ? context.frame->frameWidget() : nullptr)
    , m_context(context) {
    setObjectName(QStringLiteral("frmSessionCheck"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(QStringLiteral("Session Check"));
    Label1 = new QLabel(QStringLiteral("The disc in the recorder already holds sessions. Import "
                                       "the last one into a data compilation to add to it in a "
                                       "new session, erase a rewritable disc, or eject it."),
                        this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setWordWrap(true);
    tvwSession = new QTreeWidget(this);
    tvwSession->setObjectName(QStringLiteral("tvwSession"));
    tvwSession->setHeaderHidden(true);
    tvwSession->setMinimumSize(500, 220);
    auto button = [this](QPushButton *&member, const char *name, const char *caption,
                         void (frmSessionCheck::*handler)()) {
        member = new QPushButton(QString::fromLatin1(caption), this);
        member->setObjectName(QLatin1String(name));
        connect(member, &QPushButton::clicked, this, [this, name, handler] {
            ErrorTrap::run(name, "frmSessionCheck", [=, this] { (this->*handler)(); });
        });
    };
    button(cmdImport, "cmdImport_Click", "&Import Session", &frmSessionCheck::cmdImport_Click);
    button(cmdErase, "cmdErase_Click", "&Erase Disc...", &frmSessionCheck::cmdErase_Click);
    button(cmdEject, "cmdEject_Click", "Eject &Disc", &frmSessionCheck::cmdEject_Click);
    button(cmdCancel, "cmdCancel_Click", "&Cancel", &frmSessionCheck::cmdCancel_Click);
    cmdImport->setDefault(true);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdImport, cmdErase, cmdEject})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(cmdCancel);
    auto *column = new QVBoxLayout(this);
    column->addWidget(Label1);
    column->addWidget(tvwSession);
    column->addLayout(buttons);
}

frmSessionCheck::~frmSessionCheck() {
    DefaultInstance<frmSessionCheck>::release(this);
}

void frmSessionCheck::closeEvent(QCloseEvent *event) {
    DefaultInstance<frmSessionCheck>::release(this);
    event->accept();
}

QString frmSessionCheck::keyOf(const QTreeWidgetItem *node) {
    return node ? node->data(0, Qt::UserRole).toString() : QString();
}

QTreeWidgetItem *frmSessionCheck::addNode(QTreeWidgetItem *parent, const QString &key,
                                          const QString &text, const QString &pictureKey) {
    auto *node = new QTreeWidgetItem({text});
    node->setData(0, Qt::UserRole, key);
    node->setIcon(0, picture(pictureKey));
    if (parent)
        parent->addChild(node);
    else
        tvwSession->addTopLevelItem(node);
    return node;
}

void frmSessionCheck::GetSessionInfo() {
    CDWriterPro *cd = m_context.engine;
    mlngUSize = CLng(GetUsedSpace(cd, 3));
    mlngFSpace = CLng(GetFreeSpace(cd, 3));
    mintSession = CInt(cd->SessionCount());
    mblnRewritable = cd->MediaType() == CDWriterPro::MediaCDRW;
}

void frmSessionCheck::Form_Load() {
    GetSessionInfo();
    tvwSession->clear();
    QTreeWidgetItem *root = addNode(nullptr, QStringLiteral("CD-ROM"), QStringLiteral("CD-ROM"),
                                    QStringLiteral("CDROM"));
    root->setExpanded(true);
    for (int k = 1; k <= mintSession; ++k) {
        const bool last = k == mintSession;
        const QString number = Format(k, QStringLiteral("0#"));
        QTreeWidgetItem *session =
            addNode(root, QStringLiteral("Node") + QString::number(2 * k),
                    QStringLiteral("Session ") + number,
                    last ? QStringLiteral("SESOPEN") : QStringLiteral("SESCLOSED"));
        session->setExpanded(true);
        const QString line =
            last ? QStringLiteral("Empty Session: [%1MB] Used space, [%2MB] Free space")
                       .arg(mlngUSize)
                       .arg(mlngFSpace)
                 : QStringLiteral("Track ") + number + QStringLiteral(": Closed Track");
        QTreeWidgetItem *child =
            addNode(session, QStringLiteral("Node") + QString::number(2 * k + 1), line,
                    last ? QStringLiteral("TRACKOPEN") : QStringLiteral("TRACKCLOSED"));
        tvwSession->setCurrentItem(child);
        // The last session is the empty one the next write fills: the one before holds data.
        cmdImport->setText(QStringLiteral("Import Session ") + QString::number(k - 1));
    }
    cmdErase->setEnabled(mblnRewritable);
}

void frmSessionCheck::cmdImport_Click() {
    close();
    if (m_context.frame)
        m_context.frame->runCommand(QStringLiteral("IMPPRESES"));
}

void frmSessionCheck::cmdErase_Click() {
    close();
    if (m_context.frame)
        m_context.frame->runCommand(QStringLiteral("ERASEDISC"));
}

void frmSessionCheck::cmdEject_Click() {
    close();
    m_context.engine->MoveTray(false);
}

void frmSessionCheck::cmdCancel_Click() {
    close();
}
