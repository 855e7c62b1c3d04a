#include "frmChooseDir.h"
#include "diagnostics/ErrorTrap.h"
#include "frmOptions.h"
#include "widgets/DefaultInstance.h"
#include "widgets/Twips.h"

#include <QDir>
#include <QFileSystemModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

frmChooseDir::frmChooseDir() {
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(true);
    setWindowTitle(QStringLiteral("Select Start Directory"));
    resize(Twips::toPixels(4800), Twips::toPixels(5400));

    m_folders = new QFileSystemModel(this);
    m_folders->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot | QDir::Drives);
    m_folders->setRootPath(QDir::rootPath());
    FolderView = new QTreeView(this);
    FolderView->setModel(m_folders);
    FolderView->setHeaderHidden(true);
    for (int column = 1; column < m_folders->columnCount(); ++column)
        FolderView->hideColumn(column);
    // The tree opens at the user's home folder, which is where start folders usually lie; the
    // choice itself stays untouched until a node is picked.
    const QModelIndex home = m_folders->index(QDir::homePath());
    for (QModelIndex up = home.parent(); up.isValid(); up = up.parent())
        FolderView->expand(up);
    FolderView->scrollTo(home);

    cmdOK = new QPushButton(QStringLiteral("&Select Folder"), this);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdOK->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(FolderView);
    layout->addLayout(buttons);

    // A node is chosen when it is selected, not when the view merely puts its cursor on one.
    connect(FolderView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection &selected) {
                if (selected.indexes().isEmpty())
                    return;
                const QModelIndex node = selected.indexes().first();
                ErrorTrap::run("FolderView_OnAfterNodeSelect", "frmChooseDir",
                               [&] { FolderView_OnAfterNodeSelect(node); });
            });
    connect(cmdOK, &QPushButton::clicked, this,
            [this] { ErrorTrap::run("cmdOK_Click", "frmChooseDir", [this] { cmdOK_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] {
        ErrorTrap::run("cmdCancel_Click", "frmChooseDir", [this] { cmdCancel_Click(); });
    });
}

QString frmChooseDir::pathOf(const QModelIndex &Node) const {
    return QDir::toNativeSeparators(m_folders->filePath(Node));
}

void frmChooseDir::FolderView_OnAfterNodeSelect(const QModelIndex &Node) {
    if (Node.isValid())
        mstrPath = pathOf(Node);
}

void frmChooseDir::cmdOK_Click() {
    // Nothing checks the folder: the options box takes it as it is.
    DefaultInstance<frmOptions>::get()->txtStartFolder->setText(mstrPath);
    close();
}

void frmChooseDir::cmdCancel_Click() {
    close();
}
