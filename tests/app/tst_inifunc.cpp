#include "OutsideTools.h"
#include "TestEnvironment.h"
#include "app/modIniFunc.h"

#include <QtTest>

// What the two functions every window uses add to the options file's reading and writing: the
// file's own rules are tst_inifile's.
class tst_IniFunc : public QObject {
    Q_OBJECT
private slots:
    void longValueComesBackCut() {
        TestEnvironment env;
        QCOMPARE(sGetINI(env.iniFile(), "General", "Maximized Value", "0"), QStringLiteral("0"));
        QVERIFY(!QFile::exists(env.iniFile())); // reading never creates the file
        QString v(300, u'x');
        writeINI(env.iniFile(), "Directories", "FileBrowser Last Dir", v);
        QCOMPARE(OutsideTools::fileBytes(env.iniFile()).count('x'), 300); // written whole
        QCOMPARE(sGetINI(env.iniFile(), "Directories", "FileBrowser Last Dir", "").size(), 254);
        // A default longer than the buffer is cut the same way.
        QCOMPARE(sGetINI(env.iniFile(), "Directories", "Other", QString(300, u'd')).size(), 254);
    }

    void lineBreaksCleanedInTheCallersVariableOnly() {
        TestEnvironment env;
        QString v = QStringLiteral("a\r\nb");
        writeINI(env.iniFile(), "General", "Note", v);
        QCOMPARE(v, QStringLiteral("a  b"));
        QCOMPARE(OutsideTools::fileBytes(env.iniFile()), QByteArray("[General]\nNote=a\r\nb\n"));
        QCOMPARE(sGetINI(env.iniFile(), "General", "Note", "?"), QStringLiteral("a"));
    }

    void unusableFileGivesDefaultsSilently() {
        // A folder where the file should be, and a file in a folder that does not exist.
        TestEnvironment env;
        QDir().mkpath(env.iniFile());
        const QString missing = env.appFolder() + "/no/such/folder/x.ini";
        for (const QString &path : {env.iniFile(), missing}) {
            QString v = QStringLiteral("True");
            writeINI(path, "General", "Manual", v);
            QCOMPARE(sGetINI(path, "General", "Manual", "False"), QStringLiteral("False"));
        }
        QVERIFY(QFileInfo(env.iniFile()).isDir());
        QVERIFY(!QFile::exists(missing));
    }
};

QTEST_GUILESS_MAIN(tst_IniFunc)
#include "tst_inifunc.moc"
