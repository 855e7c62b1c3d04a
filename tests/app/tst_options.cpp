#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "app/frmChooseDir.h"
#include "app/frmOptions.h"
#include "diagnostics/vbwErrHandler.h"
#include "widgets/DefaultInstance.h"
#include "widgets/Twips.h"

#include <QCheckBox>
#include <QFile>
#include <QFileSystemModel>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>

namespace {

// One "Key=Value" line of the options file with the section it stands in, in file order.
struct Entry {
    QString section;
    QString key;
    QString value;
};

QList<Entry> readEntries(const QString &iniFile) {
    QList<Entry> entries;
    QFile f(iniFile);
    if (!f.open(QIODevice::ReadOnly))
        return entries;
    QString section;
    for (const QByteArray &raw : f.readAll().split('\n')) {
        const QString line = QString::fromLatin1(raw).trimmed();
        if (line.startsWith(u'[') && line.endsWith(u']'))
            section = line.mid(1, line.size() - 2);
        else if (const qsizetype eq = line.indexOf(u'='); eq > 0)
            entries.append({section, line.left(eq), line.mid(eq + 1)});
    }
    return entries;
}

QString valueOf(const QList<Entry> &entries, const QString &section, const QString &key) {
    for (const Entry &e : entries) {
        if (e.section.compare(section, Qt::CaseInsensitive) == 0 &&
            e.key.compare(key, Qt::CaseInsensitive) == 0)
            return e.value;
    }
    return QStringLiteral("<absent>");
}

// Opens the box as PREFERENCES would, but without a modal loop, so the test drives it.
frmOptions *openBox() {
    frmOptions *box = DefaultInstance<frmOptions>::get();
    box->show();
    return box;
}

void unloadBoxes() {
    DefaultInstance<frmChooseDir>::unload();
    DefaultInstance<frmOptions>::unload();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

class tst_Options : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { unloadBoxes(); }

    void defaultsWithNoOptionsFile() {
        TestEnvironment env;
        frmOptions *box = openBox();
        QVERIFY(!box->chkUseTransp->isChecked());
        // The stored slider value shows although the check box is off, and it can still move
        // once its tab is up.
        QCOMPARE(box->sldTransparency->value(), 90);
        QVERIFY(!box->sldTransparency->isEnabled());
        box->tbsOptions->setCurrentIndex(1);
        QVERIFY(box->sldTransparency->isEnabled());
        QVERIFY(box->optRightHand->isChecked());
        QVERIFY(!box->optLeftHand->isChecked());
        QVERIFY(box->optMaximized->isChecked());
        QVERIFY(!box->optManual->isChecked());
        QVERIFY(box->chkLastUsedDir->isChecked());
        QVERIFY(box->picFrame2->isHidden());
        QCOMPARE(box->txtStartFolder->text(), QStringLiteral("C:\\"));
        QVERIFY(!box->cmdApply->isEnabled());
        // Loading previews nothing: the box is opaque until the user touches transparency.
        QCOMPARE(box->windowOpacity(), 1.0);
        QCOMPARE(box->tbsOptions->count(), 3);
        QVERIFY(!QFile::exists(env.iniFile()));
    }

    void loadShowsStoredValues_data() {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<bool>("transparency");
        QTest::addColumn<int>("slider");
        QTest::addColumn<bool>("leftHand");
        QTest::addColumn<bool>("rightHand");
        QTest::addColumn<bool>("maximized");
        QTest::addColumn<bool>("manual");
        QTest::addColumn<bool>("startFolderShown");
        QTest::addColumn<QString>("startFolder");

        QTest::newRow("transparent, left, manual")
            << QByteArray("[General]\nTransparency Enabled=1\nTransparency Value=40\n"
                          "Left Hand=True\nRight Hand=False\nMaximized=False\nManual=True\n")
            << true << 40 << true << false << false << true << false << QStringLiteral("C:\\");
        QTest::newRow("start folder of its own, keys in other case")
            << QByteArray("[directories]\nuse last directory=0\nfilebrowser start dir=/srv/music\n")
            << false << 90 << false << true << true << false << true
            << QStringLiteral("/srv/music");
        QTest::newRow("start folder without a stored one")
            << QByteArray("[Directories]\nUse Last Directory=0\n") << false << 90 << false << true
            << true << false << true << QStringLiteral("C:\\");
        // Two options claiming the same side: the later one read wins, as buttons of one group.
        QTest::newRow("both hands stored true")
            << QByteArray("[General]\nLeft Hand=True\nRight Hand=True\n") << false << 90 << false
            << true << true << false << false << QStringLiteral("C:\\");
        QTest::newRow("neither hand")
            << QByteArray("[General]\nLeft Hand=False\nRight Hand=False\n") << false << 90 << false
            << false << true << false << false << QStringLiteral("C:\\");
    }

    void loadShowsStoredValues() {
        QFETCH(QByteArray, ini);
        TestEnvironment env;
        env.writeFile("Dat/tessaly.ini", ini);
        frmOptions *box = openBox();
        QTEST(box->chkUseTransp->isChecked(), "transparency");
        QTEST(box->sldTransparency->value(), "slider");
        QTEST(box->optLeftHand->isChecked(), "leftHand");
        QTEST(box->optRightHand->isChecked(), "rightHand");
        QTEST(box->optManual->isChecked(), "manual");
        QTEST(box->optMaximized->isChecked(), "maximized");
        QTEST(!box->picFrame2->isHidden(), "startFolderShown");
        QTEST(box->txtStartFolder->text(), "startFolder");
        QCOMPARE(box->windowOpacity(), 1.0);
        QVERIFY(!box->cmdApply->isEnabled());
    }

    void opensModalOverItsOwner() {
        TestEnvironment env;
        QWidget owner;
        owner.show();
        bool seen = false;
        QTimer::singleShot(0, &owner, [&] {
            frmOptions *box = DefaultInstance<frmOptions>::peek();
            QVERIFY(box && box->isVisible());
            QVERIFY(box->isModal());
            QCOMPARE(box->parentWidget(), &owner);
            seen = true;
            box->cmdOK->click();
        });
        frmOptions::showModal(&owner);
        QVERIFY(seen);
        QCOMPARE(valueOf(readEntries(env.iniFile()), "General", "FileBrowser Left"),
                 QStringLiteral("7650"));
    }

    void unreadableValueGoesToTheTrap() {
        TestEnvironment env;
        ScriptedAnswers answers;
        env.writeFile("Dat/tessaly.ini", "[General]\nTransparency Value=abc\n");
        frmOptions *box = openBox();
        QCOMPARE(answers.errors.size(), 1);
        QCOMPARE(vbwState().lastNumber, 13);
        QCOMPARE(vbwState().lastProcedure, QStringLiteral("Form_Load"));
        QCOMPARE(vbwState().lastModule, QStringLiteral("frmOptions"));
        QVERIFY(box->isVisible());
    }

    void ctrlTabMovesToTheNextTabAndWraps_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::newRow("first to second") << 0 << 1;
        QTest::newRow("second to third") << 1 << 2;
        QTest::newRow("last wraps to first") << 2 << 0;
    }

    void ctrlTabMovesToTheNextTabAndWraps() {
        QFETCH(int, from);
        QFETCH(int, to);
        TestEnvironment env;
        frmOptions *box = openBox();
        box->tbsOptions->setCurrentIndex(from);
        // Whatever control has the focus, the box sees the key first.
        QWidget *focus = box->fraOptions[from]->findChildren<QWidget *>().constFirst();
        QTest::keyClick(focus, Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(box->tbsOptions->currentIndex(), to);
        for (int i = 0; i < box->fraOptions.size(); ++i) {
            QGroupBox *frame = box->fraOptions[i];
            QCOMPARE(frame->x(), Twips::toPixels(i == to ? 165 : -20000));
            QCOMPARE(frame->isEnabled(), i == to);
            // Moved away, never hidden.
            QVERIFY(!frame->isHidden());
        }
        QVERIFY(!box->cmdApply->isEnabled());
    }

    void otherTabKeysDoNotChangeTheTab_data() {
        QTest::addColumn<int>("modifiers");
        QTest::newRow("plain tab") << int(Qt::NoModifier);
        QTest::newRow("ctrl+alt+tab") << int(Qt::ControlModifier | Qt::AltModifier);
    }

    void otherTabKeysDoNotChangeTheTab() {
        QFETCH(int, modifiers);
        TestEnvironment env;
        frmOptions *box = openBox();
        box->tbsOptions->setCurrentIndex(2);
        QTest::keyClick(box->optRightHand, Qt::Key_Tab, Qt::KeyboardModifiers(modifiers));
        QCOMPARE(box->tbsOptions->currentIndex(), 2);
    }

    void okWithoutChangeRewritesEveryKey_data() {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<QStringList>("expected"); // "Section/Key=Value"

        QTest::newRow("no options file") << QByteArray()
                                         << QStringList{"General/Transparency Enabled=0",
                                                        "General/Transparency Value=90",
                                                        "General/Left Hand=False",
                                                        "General/Right Hand=True",
                                                        "General/FileBrowser Left=7650",
                                                        "General/DataImage Left=0",
                                                        "General/AudioImage Left=0",
                                                        "General/Maximized=True",
                                                        "General/Manual=False",
                                                        "General/Maximized Value=2",
                                                        "Directories/Last Used Directory=True",
                                                        "Directories/Use Last Directory=1"};
        // The left edges come from the hand options, not from what was stored before.
        QTest::newRow("left handed, manual, stale edges")
            << QByteArray("[General]\nLeft Hand=True\nRight Hand=False\nMaximized=False\n"
                          "Manual=True\nFileBrowser Left=7650\nDataImage Left=0\n"
                          "AudioImage Left=0\nMaximized Value=2\nTransparency Enabled=1\n"
                          "Transparency Value=55\n")
            << QStringList{"General/Transparency Enabled=1",
                           "General/Transparency Value=55",
                           "General/Left Hand=True",
                           "General/Right Hand=False",
                           "General/FileBrowser Left=0",
                           "General/DataImage Left=7650",
                           "General/AudioImage Left=7650",
                           "General/Maximized=False",
                           "General/Manual=True",
                           "General/Maximized Value=0",
                           "Directories/Last Used Directory=True",
                           "Directories/Use Last Directory=1"};
        QTest::newRow("right handed, stale compilation edges")
            << QByteArray("[General]\nDataImage Left=7650\nAudioImage Left=7650\n")
            << QStringList{"General/FileBrowser Left=7650", "General/DataImage Left=0",
                           "General/AudioImage Left=0", "General/Maximized Value=2"};
        QTest::newRow("fixed start folder")
            << QByteArray("[Directories]\nUse Last Directory=0\nLast Used Directory=True\n"
                          "FileBrowser Start Dir=/home/ann/Music\n")
            << QStringList{"Directories/Last Used Directory=False",
                           "Directories/FileBrowser Start Dir=/home/ann/Music",
                           "Directories/Use Last Directory=0"};
    }

    void okWithoutChangeRewritesEveryKey() {
        QFETCH(QByteArray, ini);
        QFETCH(QStringList, expected);
        TestEnvironment env;
        if (!ini.isEmpty())
            env.writeFile("Dat/tessaly.ini", ini);
        frmOptions *box = openBox();
        QTest::mouseClick(box->cmdOK, Qt::LeftButton);
        QVERIFY(!box->isVisible());
        const QList<Entry> entries = readEntries(env.iniFile());
        for (const QString &line : expected) {
            const QString sectionKey = line.section(u'=', 0, 0);
            QCOMPARE(
                sectionKey.section(u'/', 0, 0) + u'/' + sectionKey.section(u'/', 1) + u'=' +
                    valueOf(entries, sectionKey.section(u'/', 0, 0), sectionKey.section(u'/', 1)),
                line);
        }
        if (ini.isEmpty()) {
            // A fresh file shows the order of writing: every key once, in the expected order.
            QStringList written;
            for (const Entry &e : entries)
                written << e.section + u'/' + e.key + u'=' + e.value;
            QCOMPARE(written, expected);
        }
    }

    void fieldsAreOnlyRaisedWithinOneOpening() {
        TestEnvironment env;
        frmOptions *box = openBox();
        box->tbsOptions->setCurrentIndex(2);
        box->optRightHand->click();
        box->cmdApply->click();
        QVERIFY(!box->cmdApply->isEnabled());
        box->optLeftHand->click();
        QVERIFY(box->cmdApply->isEnabled());
        box->tbsOptions->setCurrentIndex(1);
        box->optMaximized->click();
        box->cmdApply->click();
        box->optManual->click();
        box->cmdApply->click();
        QList<Entry> entries = readEntries(env.iniFile());
        QCOMPARE(valueOf(entries, "General", "FileBrowser Left"), QStringLiteral("7650"));
        QCOMPARE(valueOf(entries, "General", "DataImage Left"), QStringLiteral("7650"));
        QCOMPARE(valueOf(entries, "General", "AudioImage Left"), QStringLiteral("7650"));
        QCOMPARE(valueOf(entries, "General", "Maximized Value"), QStringLiteral("2"));
        QCOMPARE(valueOf(entries, "General", "Manual"), QStringLiteral("True"));
        unloadBoxes();

        // A new opening starts from zeros: Manual and Left Handed as stored now.
        box = openBox();
        QVERIFY(box->optManual->isChecked());
        QVERIFY(box->optLeftHand->isChecked());
        box->cmdOK->click();
        entries = readEntries(env.iniFile());
        QCOMPARE(valueOf(entries, "General", "FileBrowser Left"), QStringLiteral("0"));
        QCOMPARE(valueOf(entries, "General", "DataImage Left"), QStringLiteral("7650"));
        QCOMPARE(valueOf(entries, "General", "Maximized Value"), QStringLiteral("0"));
    }

    void cancelSavesNothingButKeepsWhatWasApplied() {
        TestEnvironment env;
        frmOptions *box = openBox();
        // A control on a tab that is not up takes no click.
        box->optManual->click();
        QVERIFY(!box->optManual->isChecked());
        box->tbsOptions->setCurrentIndex(1);
        box->optManual->click();
        QVERIFY(box->optManual->isChecked());
        box->cmdCancel->click();
        QVERIFY(!box->isVisible());
        QVERIFY(!QFile::exists(env.iniFile()));
        unloadBoxes();

        box = openBox();
        QVERIFY(box->optMaximized->isChecked());
        box->tbsOptions->setCurrentIndex(1);
        box->optManual->click();
        box->cmdApply->click();
        box->optMaximized->click();
        box->cmdCancel->click();
        QCOMPARE(valueOf(readEntries(env.iniFile()), "General", "Manual"), QStringLiteral("True"));
        QCOMPARE(valueOf(readEntries(env.iniFile()), "General", "Maximized"),
                 QStringLiteral("False"));
    }

    void transparencyPreviewsOnTheBox() {
        TestEnvironment env;
        frmOptions *box = openBox();
        box->tbsOptions->setCurrentIndex(1);
        box->chkUseTransp->click();
        QVERIFY(box->chkUseTransp->isChecked());
        QCOMPARE(box->sldTransparency->value(), 90);
        QVERIFY(box->sldTransparency->isEnabled());
        QVERIFY(qAbs(box->windowOpacity() - 0.9) < 0.01);
        QVERIFY(box->cmdApply->isEnabled());

        box->cmdApply->click();
        box->sldTransparency->setFocus();
        QTest::keyClick(box->sldTransparency, Qt::Key_PageDown);
        QCOMPARE(box->sldTransparency->value(), 80);
        QVERIFY(qAbs(box->windowOpacity() - 0.8) < 0.01);
        QVERIFY(box->cmdApply->isEnabled());

        box->chkUseTransp->click();
        QCOMPARE(box->sldTransparency->value(), 100);
        QVERIFY(!box->sldTransparency->isEnabled());
        QCOMPARE(box->windowOpacity(), 1.0);
        box->cmdOK->click();
        const QList<Entry> entries = readEntries(env.iniFile());
        QCOMPARE(valueOf(entries, "General", "Transparency Enabled"), QStringLiteral("0"));
        QCOMPARE(valueOf(entries, "General", "Transparency Value"), QStringLiteral("100"));
    }

    void turningLastUsedOffReadsTheStoredStartFolderAgain() {
        TestEnvironment env;
        env.writeFile("Dat/tessaly.ini", "[Directories]\nFileBrowser Start Dir=/srv/iso\n");
        frmOptions *box = openBox();
        QVERIFY(box->picFrame2->isHidden());
        box->chkLastUsedDir->click();
        QVERIFY(!box->picFrame2->isHidden());
        QCOMPARE(box->txtStartFolder->text(), QStringLiteral("/srv/iso"));
        box->txtStartFolder->setText(QStringLiteral("/typed/meanwhile"));
        box->chkLastUsedDir->click();
        QVERIFY(box->picFrame2->isHidden());
        box->chkLastUsedDir->click();
        QCOMPARE(box->txtStartFolder->text(), QStringLiteral("/srv/iso"));
        box->txtStartFolder->setText(QStringLiteral("not a folder at all"));
        box->cmdOK->click();
        const QList<Entry> entries = readEntries(env.iniFile());
        QCOMPARE(valueOf(entries, "Directories", "FileBrowser Start Dir"),
                 QStringLiteral("not a folder at all"));
        QCOMPARE(valueOf(entries, "Directories", "Last Used Directory"), QStringLiteral("False"));
        QCOMPARE(valueOf(entries, "Directories", "Use Last Directory"), QStringLiteral("0"));
    }

    void chooseDirAnswers_data() {
        QTest::addColumn<bool>("pickNode");
        QTest::addColumn<bool>("confirm");
        QTest::newRow("picked and selected") << true << true;
        QTest::newRow("selected without a pick") << false << true;
        QTest::newRow("picked and cancelled") << true << false;
    }

    void chooseDirAnswers() {
        QFETCH(bool, pickNode);
        QFETCH(bool, confirm);
        TestEnvironment env;
        QTemporaryDir folder;
        env.writeFile("Dat/tessaly.ini", "[Directories]\nUse Last Directory=0\n");
        frmOptions *box = openBox();
        QCOMPARE(box->txtStartFolder->text(), QStringLiteral("C:\\"));
        QString seenCaption;
        // The chooser runs modal; a queued step plays the user inside its loop.
        QTimer::singleShot(0, box, [&] {
            frmChooseDir *chooser = DefaultInstance<frmChooseDir>::peek();
            QVERIFY(chooser && chooser->isModal() && chooser->isVisible());
            seenCaption = chooser->windowTitle();
            QCOMPARE(chooser->mstrPath, QStringLiteral("C:\\"));
            if (pickNode) {
                auto *model = qobject_cast<QFileSystemModel *>(chooser->FolderView->model());
                chooser->FolderView->selectionModel()->setCurrentIndex(
                    model->index(folder.path()), QItemSelectionModel::ClearAndSelect);
                QCOMPARE(chooser->mstrPath, folder.path());
            }
            (confirm ? chooser->cmdOK : chooser->cmdCancel)->click();
        });
        box->cmdFilename->click();
        QCOMPARE(seenCaption, QStringLiteral("Select Start Directory"));
        const QString expected = !confirm   ? QStringLiteral("C:\\")
                                 : pickNode ? folder.path()
                                            : QStringLiteral("C:\\");
        QCOMPARE(box->txtStartFolder->text(), expected);
        QCOMPARE(box->cmdApply->isEnabled(), confirm && pickNode);
    }
};

QTEST_MAIN(tst_Options)
#include "tst_options.moc"
