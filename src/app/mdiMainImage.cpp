// Keeps the data window's tree in step with the engine's image, and owns what the frame shows
// of it: the label box, the ruler and the size panels.
#include "DataImageMirror.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "base/Format.h"
#include "diagnostics/ErrorTrap.h"
#include "engine/writer/CDWriterPro.h"
#include "mdiMain.h"
#include "modDeclarations.h"
#include "modGlobals.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/MessageBoxService.h"
#include "widgets/Twips.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QTreeWidgetItem>

void mdiMain::connectImageEvents() {
    connect(Tessaly, &CDWriterPro::ISOItemAdded, this,
            [this](const QString &sParentDestPath, const QString &sItemDestPath,
                   const QString &sItemName, const QString &SourceFilePath, bool bIsDirectory,
                   VbDate, qint64) {
                ErrorTrap::run("Tessaly_ISOItemAdded", "mdiMain", [&] {
                    Tessaly_ISOItemAdded(sParentDestPath, sItemDestPath, sItemName, SourceFilePath,
                                         bIsDirectory);
                });
            });
    connect(Tessaly, &CDWriterPro::ISOItemRemoved, this,
            [this](const QString &sDestinationPath, const QString &, bool bIsDirectory) {
                ErrorTrap::run("Tessaly_ISOItemRemoved", "mdiMain",
                               [&] { Tessaly_ISOItemRemoved(sDestinationPath, bIsDirectory); });
            });
    connect(Tessaly, &CDWriterPro::ISODestPathChanged, this,
            [this](const QString &sOldDestPath, const QString &sNewDestPath, bool bIsDirectory) {
                ErrorTrap::run("Tessaly_ISODestPathChanged", "mdiMain", [&] {
                    Tessaly_ISODestPathChanged(sOldDestPath, sNewDestPath, bIsDirectory);
                });
            });
    connect(Tessaly, &CDWriterPro::EnumISOItems, this,
            [this](const QString &, const QString &sItemDestPath, const QString &sItemName,
                   const QString &, bool bIsDirectory, VbDate dteFileDate, qint64 lFileSize) {
                ErrorTrap::run("Tessaly_EnumISOItems", "mdiMain", [&] {
                    Tessaly_EnumISOItems(sItemDestPath, sItemName, bIsDirectory, dteFileDate,
                                         lFileSize);
                });
            });
    connect(Tessaly, &CDWriterPro::ISOImageReset, this, [this] {
        ErrorTrap::run("Tessaly_ISOImageReset", "mdiMain", [this] { Tessaly_ISOImageReset(); });
    });
    connect(Tessaly, &CDWriterPro::ReplaceImportedISOFile, this,
            [this](const QString &sDestPath, const QString &sNewSourcePath,
                   const QString &sFileName, bool &bReplaceFile) {
                ErrorTrap::run("Tessaly_ReplaceImportedISOFile", "mdiMain", [&] {
                    Tessaly_ReplaceImportedISOFile(sDestPath, sNewSourcePath, sFileName,
                                                   bReplaceFile);
                });
            });
    connect(txtVolIdentifier, &QLineEdit::textChanged, this, [this] {
        ErrorTrap::run("txtVolIdentifier_Change", "mdiMain", [this] { txtVolIdentifier_Change(); });
    });
}

void mdiMain::Tessaly_ISOItemAdded(const QString &sParentDestPath, const QString &sItemDestPath,
                                   const QString &sItemName, const QString &SourceFilePath,
                                   bool bIsDirectory) {
    if (bIsDirectory) {
        if (DataImageMirror *data = DataImageMirror::current())
            data->addNode(sParentDestPath, sItemDestPath, sItemName, QStringLiteral("CLOSEDFOLDER"),
                          QStringLiteral("OPENFOLDER"));
        smartStatusBar->Item(QStringLiteral("DATA"))
            ->setText(QStringLiteral(" Adding....") +
                      (SourceFilePath.isEmpty() ? sItemDestPath
                                                : QDir::toNativeSeparators(SourceFilePath)));
    }
    // A large drop keeps the window alive.
    QCoreApplication::processEvents();
}

void mdiMain::Tessaly_ISOItemRemoved(const QString &sDestinationPath, bool bIsDirectory) {
    if (!bIsDirectory)
        return;
    if (DataImageMirror *data = DataImageMirror::current())
        data->removeNode(sDestinationPath);
}

void mdiMain::Tessaly_ISODestPathChanged(const QString &sOldDestPath, const QString &sNewDestPath,
                                         bool bIsDirectory) {
    if (!bIsDirectory)
        return;
    if (DataImageMirror *data = DataImageMirror::current())
        data->rekeyNode(sOldDestPath, sNewDestPath);
}

void mdiMain::Tessaly_EnumISOItems(const QString &sItemDestPath, const QString &sItemName,
                                   bool bIsDirectory, VbDate dteFileDate, qint64 lFileSize) {
    if (bIsDirectory)
        return;
    DataImageMirror *data = DataImageMirror::current();
    if (!data)
        return;
    data->addFileRow(sItemDestPath, sItemName,
                     Format(double(lFileSize) / 1024, QStringLiteral("###,###,##0")) +
                         QStringLiteral(" KB"),
                     Format(dteFileDate, QStringLiteral("YYYY/MM/DD hh:mm:ss")));
}

void mdiMain::Tessaly_ISOImageReset() {
    // The image is reset by its own window; with none open there is nothing to show it in.
    if (DataImageMirror::current())
        ResetImage();
}

void mdiMain::Tessaly_ReplaceImportedISOFile(const QString &, const QString &, const QString &,
                                             bool &bReplaceFile) {
    // The user put a file under that name on purpose: the new one takes the old one's place in
    // the next session, the old one stays on the disc's earlier session.
    bReplaceFile = true;
}

void mdiMain::ResetImage() {
    DataImageMirror *data = DataImageMirror::current();
    if (data)
        data->clearImage();
    Tessaly->setVolumeIdentifier(
        QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd_hhmm")));
    gstrVolumeIdentifier = Tessaly->VolumeIdentifier();
    gstrVolumeApplicationIdentifier = QStringLiteral("TESSALY");
    if (data)
        data->addNode(QString(), QStringLiteral("\\"), Tessaly->VolumeIdentifier(),
                      QStringLiteral("CD"), QStringLiteral("CD"));
    txtVolIdentifier->setText(Tessaly->VolumeIdentifier());
    if (data)
        data->setCaption(QStringLiteral("ISO Image ") + txtVolIdentifier->text());
    RecalcImageSize();
}

void mdiMain::txtVolIdentifier_Change() {
    if (gblnDisctypeIsData != 0)
        return;
    DataImageMirror *data = DataImageMirror::current();
    const QString text = txtVolIdentifier->text();
    if (data) {
        data->setCaption(QStringLiteral("ISO Image ") + text);
        if (QTreeWidgetItem *root = data->node(QStringLiteral("\\")))
            root->setText(0, text);
    }
    gstrVolumeIdentifier = text;
}

void mdiMain::SetTypeSize() {
    for (int i = 0; i <= 10; ++i) {
        QLabel *label = lblSize.at(i);
        if (gblnDisctypeIsData == 1)
            label->setText(QString::number(i * 10) + QStringLiteral("MIN"));
        else if (gblnDisctypeIsData == 0 || gblnDisctypeIsData == 3)
            label->setText(QString::number(i * 100) + QStringLiteral("MB"));
        label->adjustSize();
    }
}

void mdiMain::RecalcImageSize() {
    const Long lngSizeBlocks = Tessaly->ISOImageBlocks();
    const double dblSizeBytes = Tessaly->BlocksToBytes(lngSizeBlocks, 1);
    smartStatusBar->Item(QStringLiteral("DATA"))
        ->setText(QStringLiteral(" Data Image Size: ") +
                  Format(dblSizeBytes / 1024 / 1024, QStringLiteral("##0.00")) +
                  QStringLiteral(" MB  "));
    // The bar is always full: its length is the measure, 10 twips to the megabyte.
    Long maximum = CLng(dblSizeBytes / 1024 / 1024);
    if (maximum > 10000)
        maximum = 10000;
    // A bar without range would draw as busy; an empty image has no width anyway.
    prbSize->setMaximum(qMax<qint32>(maximum, 1));
    Long width = maximum;
    width *= 10;
    prbSize->resize(Twips::toPixels(width), prbSize->height());
    // Read back as the bar holds it, within its maximum.
    prbSize->setValue(qMin<qint32>(width, prbSize->maximum()));
    const double shownMB = prbSize->value();
    if (Tessaly->LastSessionStatus() != CDWriterPro::SessionClosed &&
        Tessaly->MediaType() != CDWriterPro::MediaNone) {
        prbSize->setPalette(QPalette());
        // Five megabytes stay in reserve. The warning tells, the write may still be started.
        // An open last session has no free space to measure: that was told on arrival.
        if (Tessaly->LastSessionStatus() != CDWriterPro::SessionIncomplete &&
            GetFreeSpace(Tessaly, 3) - 5 <= shownMB)
            MsgBox(QStringLiteral("You must remove some files from the image.\nData image size "
                                  "is bigger than free space on media!"),
                   vbExclamation, App::ProductName() + QStringLiteral(" - Warning"));
    } else {
        QPalette highlight = prbSize->palette();
        highlight.setColor(QPalette::Highlight, palette().color(QPalette::Highlight));
        prbSize->setPalette(highlight);
    }
    followRuler();
    smartStatusBar->Item(QStringLiteral("FILES"))
        ->setText(QStringLiteral(" Files: ") + QString::number(Tessaly->ISOFileCount()));
    smartStatusBar->Item(QStringLiteral("DIRECTORIES"))
        ->setText(QStringLiteral(" Directories: ") + QString::number(Tessaly->ISODirectoryCount()));
}
