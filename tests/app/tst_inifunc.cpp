#include "TestEnvironment.h"
#include "app/modIniFunc.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

// The options file on real files, through the two functions every window uses.
class tst_IniFunc : public QObject {
    Q_OBJECT
private:
    static QByteArray readAll(const QString &path) {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

private slots:
    void absentFileGivesDefaultsAndIsNotCreated() {
        TestEnvironment env;
        QCOMPARE(sGetINI(env.iniFile(), "General", "Maximized Value", "0"), QStringLiteral("0"));
        QCOMPARE(sGetINI(env.iniFile(), "Directories", "FileBrowser Last Dir", "C:\\"),
                 QStringLiteral("C:\\"));
        QVERIFY(!QFile::exists(env.iniFile()));
    }

    void firstWriteCreatesTheFile() {
        TestEnvironment env;
        QString v = QStringLiteral("2");
        writeINI(env.iniFile(), "General", "Maximized Value", v);
        QCOMPARE(readAll(env.iniFile()), QByteArray("[General]\nMaximized Value=2\n"));
        QCOMPARE(sGetINI(env.iniFile(), "General", "Maximized Value", "0"), QStringLiteral("2"));
    }

    void keysFoundWhateverTheirCase_data() {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::newRow("as written") << "General"
                                    << "Transparency Value";
        QTest::newRow("lower") << "general"
                               << "transparency value";
        QTest::newRow("upper") << "GENERAL"
                               << "TRANSPARENCY VALUE";
        QTest::newRow("mixed") << "gEnErAl"
                               << "tRaNsPaReNcY vAlUe";
    }
    void keysFoundWhateverTheirCase() {
        QFETCH(QString, section);
        QFETCH(QString, key);
        TestEnvironment env;
        env.writeFile("Dat/tessaly.ini", "[General]\r\nTransparency Value=75\r\n");
        QCOMPARE(sGetINI(env.iniFile(), section, key, "90"), QStringLiteral("75"));
    }

    void longValueComesBackCut() {
        TestEnvironment env;
        QString v(300, u'x');
        writeINI(env.iniFile(), "Directories", "FileBrowser Last Dir", v);
        QCOMPARE(readAll(env.iniFile()).count('x'), 300); // written whole
        QCOMPARE(sGetINI(env.iniFile(), "Directories", "FileBrowser Last Dir", "").size(), 254);
        // A default longer than the buffer is cut the same way.
        QCOMPARE(sGetINI(env.iniFile(), "Directories", "Other", QString(300, u'd')).size(), 254);
    }

    void lineBreaksCleanedInTheCallersVariableOnly() {
        TestEnvironment env;
        QString v = QStringLiteral("a\r\nb");
        writeINI(env.iniFile(), "General", "Note", v);
        QCOMPARE(v, QStringLiteral("a  b"));
        QCOMPARE(readAll(env.iniFile()), QByteArray("[General]\nNote=a\r\nb\n"));
        QCOMPARE(sGetINI(env.iniFile(), "General", "Note", "?"), QStringLiteral("a"));
    }

    void foreignLinesStayByteForByte() {
        TestEnvironment env;
        const QByteArray before =
            "; kept as it is\r\n[General]\r\nManual=False\r\n"
            "weird line \xe9\xff\r\n\r\n[Directories]\r\nUse Last Directory=1\r\n";
        env.writeFile("Dat/tessaly.ini", before);
        QString v = QStringLiteral("True");
        writeINI(env.iniFile(), "General", "Manual", v);
        QByteArray expected = before;
        expected.replace("Manual=False", "Manual=True");
        QCOMPARE(readAll(env.iniFile()), expected);
    }

    void keyAddedToTheMiddleSection() {
        TestEnvironment env;
        env.writeFile("Dat/tessaly.ini",
                      "[General]\nManual=False\n\n[Directories]\nUse Last Directory=1\n\n"
                      "[Encoder]\nType=1\n");
        QString v = QStringLiteral("/srv/music");
        writeINI(env.iniFile(), "directories", "FileBrowser Start Dir", v);
        QCOMPARE(readAll(env.iniFile()),
                 QByteArray("[General]\nManual=False\n\n[Directories]\nUse Last Directory=1\n"
                            "FileBrowser Start Dir=/srv/music\n\n[Encoder]\nType=1\n"));
    }

    void unreadableOrBinaryFileGivesDefaults() {
        TestEnvironment env;
        env.writeFile("Dat/tessaly.ini", QByteArray("[General]\nManual=True\n\0\0\x7f", 26));
        QCOMPARE(sGetINI(env.iniFile(), "General", "Manual", "False"), QStringLiteral("False"));
        // A folder where the file should be: nothing to read, nothing written, no failure.
        TestEnvironment env2;
        QDir().mkpath(env2.iniFile());
        QCOMPARE(sGetINI(env2.iniFile(), "General", "Manual", "False"), QStringLiteral("False"));
        QString v = QStringLiteral("True");
        writeINI(env2.iniFile(), "General", "Manual", v);
        QVERIFY(QFileInfo(env2.iniFile()).isDir());
    }

    void writeToMissingFolderIsSilent() {
        TestEnvironment env;
        QString v = QStringLiteral("True");
        const QString path = env.appFolder() + "/no/such/folder/x.ini";
        writeINI(path, "General", "Manual", v);
        QVERIFY(!QFile::exists(path));
        QCOMPARE(sGetINI(path, "General", "Manual", "False"), QStringLiteral("False"));
    }
};

QTEST_GUILESS_MAIN(tst_IniFunc)
#include "tst_inifunc.moc"
