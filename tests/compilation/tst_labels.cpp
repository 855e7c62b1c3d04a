// The volume labels dialog: its boxes, limits and captions, and what OK and Cancel store.
#include "DataWindowRig.h"

#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "compilation/frmData.h"
#include "compilation/frmLabels.h"

#include <QApplication>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

class tst_Labels : public QObject {
    Q_OBJECT
private slots:
    void boxes_data();
    void boxes();
    void okStaysDisabledWithoutChange();
    void cancelStoresNothing();
    void openedByTheLabelCommand();
};

namespace {
QString *globalOf(const QString &box) {
    static const QHash<QString, QString *> globals = {
        {"txtVolumeLabel", &gstrVolumeIdentifier},
        {"txtVolumeApplication", &gstrVolumeApplicationIdentifier},
        {"txtVolumePublisher", &gstrVolumePublisher},
        {"txtSystemVolumeIdentifier", &gstrVolumeSystemIdentifier},
        {"txtVolumeSet", &gstrVolumeSetIdentifier},
        {"txtDataPreparer", &gstrVolumeDataPreparerIdentifier},
        {"txtCopyrightFile", &gstrVolumeCopyrightFileIdentifier},
        {"txtAbstractFile", &gstrVolumeAbstractFileIdentifier},
        {"txtBibliographicFile", &gstrVolumeBiblioFileIdentifier},
    };
    return globals.value(box);
}
} // namespace

void tst_Labels::boxes_data() {
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("limit");
    QTest::newRow("volume") << "txtVolumeLabel"
                            << "Volume Label:" << 31;
    QTest::newRow("application") << "txtVolumeApplication"
                                 << "Application:" << 128;
    QTest::newRow("publisher") << "txtVolumePublisher"
                               << "Publisher:" << 128;
    QTest::newRow("system") << "txtSystemVolumeIdentifier"
                            << "System Identifier:" << 31;
    QTest::newRow("volume set") << "txtVolumeSet"
                                << "Volume Set:" << 128;
    QTest::newRow("data preparer") << "txtDataPreparer"
                                   << "Data Preparer:" << 128;
    QTest::newRow("copyright") << "txtCopyrightFile"
                               << "Copyright File:" << 36;
    QTest::newRow("abstract") << "txtAbstractFile"
                              << "Abstract File:" << 36;
    QTest::newRow("bibliographic") << "txtBibliographicFile"
                                   << "Bibliographic File:" << 36;
}

// Each box shows its global, takes no more than its limit, and OK stores what it holds; the
// volume label reaches the box of the frame, the root of the tree and the caption too.
void tst_Labels::boxes() {
    QFETCH(QString, box);
    QFETCH(QString, caption);
    QFETCH(int, limit);
    DataWindowRig rig;
    QVERIFY(rig.started());
    *globalOf(box) = QStringLiteral("before");
    frmLabels dialog(rig.frame());
    QCOMPARE(dialog.windowTitle(), QStringLiteral("ISO Volume Labels"));
    auto *edit = dialog.findChild<QLineEdit *>(box);
    QVERIFY(edit);
    QCOMPARE(edit->text(), QStringLiteral("before"));
    auto *form = dialog.findChild<QFormLayout *>();
    auto *label = qobject_cast<QLabel *>(form->labelForField(edit));
    QVERIFY(label);
    QCOMPARE(label->text(), caption);
    QVERIFY(!dialog.cmdOK->isEnabled());
    edit->clear();
    QTest::keyClicks(edit, QString(limit + 4, u'L'));
    QCOMPARE(edit->text().size(), limit);
    QVERIFY(dialog.cmdOK->isEnabled());
    QTest::mouseClick(dialog.cmdOK, Qt::LeftButton);
    QCOMPARE(*globalOf(box), QString(limit, u'L'));
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    const QString volume = gstrVolumeIdentifier;
    QCOMPARE(rig.frame()->txtVolIdentifier->text(), volume);
    QCOMPARE(rig.data()->node("\\")->text(0), volume);
    QCOMPARE(rig.data()->windowTitle(), "ISO Image " + volume);
}

void tst_Labels::okStaysDisabledWithoutChange() {
    DataWindowRig rig;
    QVERIFY(rig.started());
    for (const char *name : {"txtVolumeLabel", "txtVolumePublisher", "txtBibliographicFile"})
        *globalOf(QLatin1String(name)) = QStringLiteral("set");
    frmLabels dialog(rig.frame());
    QVERIFY(!dialog.cmdOK->isEnabled());
    // Moving through the boxes selects their texts and changes nothing.
    for (QLineEdit *edit : dialog.findChildren<QLineEdit *>()) {
        edit->setFocus();
        QCoreApplication::processEvents();
    }
    QVERIFY(!dialog.cmdOK->isEnabled());
}

void tst_Labels::cancelStoresNothing() {
    DataWindowRig rig;
    QVERIFY(rig.started());
    const QString volume = gstrVolumeIdentifier;
    frmLabels dialog(rig.frame());
    dialog.txtVolumeLabel->setText(QStringLiteral("NEWNAME"));
    dialog.txtVolumePublisher->setText(QStringLiteral("ME"));
    QTest::mouseClick(dialog.cmdCancel, Qt::LeftButton);
    QCOMPARE(gstrVolumeIdentifier, volume);
    QCOMPARE(gstrVolumePublisher, QString());
    QCOMPARE(rig.frame()->txtVolIdentifier->text(), volume);
}

void tst_Labels::openedByTheLabelCommand() {
    DataWindowRig rig;
    QVERIFY(rig.started());
    QString seen;
    bool modal = false;
    QTimer::singleShot(0, [&] {
        auto *dialog = qobject_cast<frmLabels *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        seen = dialog->windowTitle();
        modal = dialog->isModal();
        dialog->txtVolumeLabel->setText(QStringLiteral("FROMMENU"));
        dialog->cmdOK->click();
    });
    rig.frame()->runCommand(QStringLiteral("LABEL"));
    QCOMPARE(seen, QStringLiteral("ISO Volume Labels"));
    QVERIFY(modal);
    QCOMPARE(gstrVolumeIdentifier, QStringLiteral("FROMMENU"));
}

QTEST_MAIN(tst_Labels)
#include "tst_labels.moc"
