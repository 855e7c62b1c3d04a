// The volume labels dialog: its boxes, limits and captions, and what OK and Cancel store;
// tst_endtoend opens it through the LABEL command and reads the labels off the disc.
#include "DataWindowRig.h"

#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "compilation/frmData.h"
#include "compilation/frmLabels.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

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

class tst_Labels : public QObject {
    Q_OBJECT
private slots:
    void boxes_data() {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("limit");
        const struct {
            const char *box, *caption;
            int limit;
        } rows[] = {
            {"txtVolumeLabel", "Volume Label:", 31},
            {"txtVolumeApplication", "Application:", 128},
            {"txtVolumePublisher", "Publisher:", 128},
            {"txtSystemVolumeIdentifier", "System Identifier:", 31},
            {"txtVolumeSet", "Volume Set:", 128},
            {"txtDataPreparer", "Data Preparer:", 128},
            {"txtCopyrightFile", "Copyright File:", 36},
            {"txtAbstractFile", "Abstract File:", 36},
            {"txtBibliographicFile", "Bibliographic File:", 36},
        };
        for (const auto &r : rows)
            QTest::newRow(r.box) << r.box << r.caption << r.limit;
    }

    // Each box shows its global, takes no more than its limit, and OK stores what it holds; the
    // volume label reaches the box of the frame, the root of the tree and the caption too.
    void boxes() {
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

    void okStaysDisabledWithoutChange() {
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
