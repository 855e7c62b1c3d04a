// The volume labels dialog: its boxes, limits and captions, and what OK and Cancel store;
// tst_endtoend opens it through the LABEL command and reads the labels off the disc.
#include "DataWindowRig.h"
#include "VolumeLabels.h"

#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "compilation/frmData.h"
#include "compilation/frmLabels.h"

#include <QtTest>
#include <QtWidgets>

class tst_Labels : public QObject {
    Q_OBJECT
private slots:
    // Each box shows its global, takes no more than its limit, and OK stores what it holds; the
    // volume label reaches the box of the frame, the root of the tree and the window's title too.
    // The captions and limits as shown are pinned by the frmLabels snapshot.
    void boxes() {
        DataWindowRig rig;
        QVERIFY(rig.started());
        for (const VolumeLabel &label : volumeLabels()) {
            *label.global = QStringLiteral("before");
            frmLabels dialog(rig.frame());
            auto *edit = dialog.findChild<QLineEdit *>(label.box);
            QCOMPARE(edit->text(), QStringLiteral("before"));
            // Moving through the boxes selects their texts and changes nothing.
            for (QLineEdit *other : dialog.findChildren<QLineEdit *>()) {
                other->setFocus();
                QCoreApplication::processEvents();
            }
            QVERIFY(!dialog.cmdOK->isEnabled());
            edit->clear();
            QTest::keyClicks(edit, QString(label.limit + 4, u'L'));
            QVERIFY2(dialog.cmdOK->isEnabled(), label.box);
            QTest::mouseClick(dialog.cmdOK, Qt::LeftButton);
            QCOMPARE(*label.global, QString(label.limit, u'L'));
            QCOMPARE(dialog.result(), int(QDialog::Accepted));
            const QString volume = gstrVolumeIdentifier;
            QCOMPARE(rig.frame()->txtVolIdentifier->text(), volume);
            QCOMPARE(rig.data()->node("\\")->text(0), volume);
            QCOMPARE(rig.data()->windowTitle(), "ISO Image " + volume);
        }
    }

    void cancelStoresNothing() {
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
};

QTEST_MAIN(tst_Labels)
#include "tst_labels.moc"
