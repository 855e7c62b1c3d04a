#include "OutsideTools.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "WidgetSnapshot.h"
#include "app/frmChooseDir.h"
#include "app/frmOptions.h"
#include "app/modIniFunc.h"
#include "diagnostics/vbwErrHandler.h"
#include "widgets/DefaultInstance.h"
#include "widgets/Twips.h"

#include <QtTest>
#include <QtWidgets>

namespace {

// The stored values of the keys named in "Section/Key=Value;...", in the same form.
QString storedAs(const TestEnvironment &env, const QString &expected) {
    QStringList got;
    for (const QString &line : expected.split(u';')) {
        const QString key = line.section(u'=', 0, 0);
        got << key + u'=' +
                   sGetINI(env.iniFile(), key.section(u'/', 0, 0), key.section(u'/', 1),
                           "<absent>");
    }
    return got.join(u';');
}
#define COMPARE_STORED(env, expected) QCOMPARE(storedAs(env, expected), QString(expected))

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

    // What the box shows of the stored options, and what OK without a change writes back
    // ("Section/Key=Value;..."; the keys left out are not checked, and an empty list not at all).
    void loadShowsAndOkRewrites_data() {
        // shown: a snapshot of the box as it opens
        columns<QByteArray, QString, QString>("ini", "shown", "expected");
        QTest::newRow("no options file")
            << QByteArray() << "options-default"
            << "General/Transparency Enabled=0;General/Transparency Value=90;"
               "General/Left Hand=False;General/Right Hand=True;General/FileBrowser Left=7650;"
               "General/DataImage Left=0;General/AudioImage Left=0;General/Maximized=True;"
               "General/Manual=False;General/Maximized Value=2;"
               "Directories/Last Used Directory=True;Directories/Use Last Directory=1";
        QTest::newRow("transparent, left, manual")
            << QByteArray("[General]\nTransparency Enabled=1\nTransparency Value=40\n"
                          "Left Hand=True\nRight Hand=False\nMaximized=False\nManual=True\n")
            << "options-transparent-40-left-manual" << QString();
        // The left edges come from the hand options, not from what was stored before.
        QTest::newRow("left handed, manual, stale edges")
            << QByteArray("[General]\nLeft Hand=True\nRight Hand=False\nMaximized=False\n"
                          "Manual=True\nFileBrowser Left=7650\nDataImage Left=0\n"
                          "AudioImage Left=0\nMaximized Value=2\nTransparency Enabled=1\n"
                          "Transparency Value=55\n")
            << "options-transparent-55-left-manual"
            << "General/Transparency Enabled=1;General/Transparency Value=55;"
               "General/Left Hand=True;General/Right Hand=False;General/FileBrowser Left=0;"
               "General/DataImage Left=7650;General/AudioImage Left=7650;General/Maximized=False;"
               "General/Manual=True;General/Maximized Value=0;"
               "Directories/Last Used Directory=True;Directories/Use Last Directory=1";
        QTest::newRow("right handed, stale compilation edges")
            << QByteArray("[General]\nDataImage Left=7650\nAudioImage Left=7650\n")
            << "options-default"
            << "General/FileBrowser Left=7650;General/DataImage Left=0;General/AudioImage Left=0;"
               "General/Maximized Value=2";
        QTest::newRow("start folder of its own, keys in other case")
            << QByteArray("[directories]\nuse last directory=0\nfilebrowser start dir=/srv/music\n")
            << "options-start-srv-music" << QString();
        QTest::newRow("fixed start folder")
            << QByteArray("[Directories]\nUse Last Directory=0\nLast Used Directory=True\n"
                          "FileBrowser Start Dir=/home/ann/Music\n")
            << "options-start-ann-music"
            << "Directories/Last Used Directory=False;"
               "Directories/FileBrowser Start Dir=/home/ann/Music;Directories/Use Last Directory=0";
        QTest::newRow("start folder without a stored one")
            << QByteArray("[Directories]\nUse Last Directory=0\n") << "options-start-default"
            << QString();
        // Two options claiming the same side: the later one read wins, as buttons of one group.
        QTest::newRow("both hands stored true")
            << QByteArray("[General]\nLeft Hand=True\nRight Hand=True\n") << "options-default"
            << QString();
        QTest::newRow("neither hand")
            << QByteArray("[General]\nLeft Hand=False\nRight Hand=False\n") << "options-no-hand"
            << QString();
    }

    void loadShowsAndOkRewrites() {
        auto [ini, expected] = fetch<QByteArray, QString>("ini", "expected");
        TestEnvironment env;
        if (!ini.isEmpty())
            env.writeFile("Dat/tessaly.ini", ini);
        frmOptions *box = openBox();
        QFETCH(QString, shown);
        // Loading previews nothing: the box is opaque until the user touches transparency.
        QCOMPARE(WidgetSnapshot::differences(box, shown), QString());
        if (expected.isEmpty())
            return;
        QTest::mouseClick(box->cmdOK, Qt::LeftButton);
        QVERIFY(!box->isVisible());
        QCOMPARE(storedAs(env, expected), expected);
        if (ini.isEmpty()) {
            // A fresh file shows the order of writing: every key once, in the expected order.
            QString want, section;
            for (const QString &entry : expected.split(u';')) {
                if (entry.section(u'/', 0, 0) != section)
                    want += u'[' + (section = entry.section(u'/', 0, 0)) + "]\n";
                want += entry.section(u'/', 1) + u'\n';
            }
            QCOMPARE(QString::fromLatin1(OutsideTools::fileBytes(env.iniFile())), want);
        }
    }

    void cancelSavesNothingButKeepsWhatWasApplied() {
        TestEnvironment env;
        frmOptions *box = openBox();
        // Controls on a tab that is not up are greyed (options-default), so it is raised first.
        box->tbsOptions->setCurrentIndex(1);
        box->optManual->click();
        box->cmdCancel->click();
        QVERIFY(!box->isVisible());
        QVERIFY(!QFile::exists(env.iniFile()));
        unloadBoxes();

        box = openBox();
        QCOMPARE(WidgetSnapshot::differences(box, "options-default"), QString());
        box->tbsOptions->setCurrentIndex(1);
        box->optManual->click();
        box->cmdApply->click();
        box->optMaximized->click();
        box->cmdCancel->click();
        COMPARE_STORED(env, "General/Manual=True;General/Maximized=False");
    }

    void transparencyPreviewsOnTheBox() {
        TestEnvironment env;
        frmOptions *box = openBox();
        // The slider is off while the check box is, but can move once its tab is up.
        box->tbsOptions->setCurrentIndex(1);
        QCOMPARE(WidgetSnapshot::differences(box, "options-transparency-tab"), QString());
        box->chkUseTransp->click();
        QCOMPARE(WidgetSnapshot::differences(box, "options-transparency-on"), QString());
        QVERIFY(!QFile::exists(env.iniFile()));
        box->cmdApply->click();
        box->sldTransparency->setFocus();
        QTest::keyClick(box->sldTransparency, Qt::Key_PageDown);
        QCOMPARE(WidgetSnapshot::differences(box, "options-transparency-80"), QString());
        box->chkUseTransp->click();
        QCOMPARE(WidgetSnapshot::differences(box, "options-transparency-off"), QString());
        box->cmdOK->click();
        COMPARE_STORED(env, "General/Transparency Enabled=0;General/Transparency Value=100");
    }

    void chooseDirAnswers_data() {
        columns<bool, bool>("pickNode", "confirm");
        QTest::newRow("picked and selected") << true << true;
        QTest::newRow("selected without a pick") << false << true;
        QTest::newRow("picked and cancelled") << true << false;
    }

    void chooseDirAnswers() {
        auto [pickNode, confirm] = fetch<bool, bool>("pickNode", "confirm");
        TestEnvironment env;
        QTemporaryDir folder;
        env.writeFile("Dat/tessaly.ini", "[Directories]\nUse Last Directory=0\n");
        frmOptions *box = openBox();
        // The chooser runs modal; a queued step plays the user inside its loop.
        QTimer::singleShot(0, box, [&] {
            frmChooseDir *chooser = DefaultInstance<frmChooseDir>::peek();
            QVERIFY(chooser && chooser->isModal() && chooser->isVisible());
            QCOMPARE(WidgetSnapshot::differences(chooser, "options-start-folder-chooser"),
                     QString());
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
        QCOMPARE(box->txtStartFolder->text(), confirm && pickNode ? folder.path() : "C:\\");
        QCOMPARE(box->cmdApply->isEnabled(), confirm && pickNode);
    }
};

QTEST_MAIN(tst_Options)
#include "tst_options.moc"
