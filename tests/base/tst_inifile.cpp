#include "base/IniFile.h"

#include <QTest>

class tst_IniFile : public QObject {
    Q_OBJECT
private slots:
    void read_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("expected");
        const QByteArray ini = "[General]\r\nMaximized Value=2\r\nManual = True \r\n"
                               "[Directories]\r\nFileBrowser Last Dir=/home/u/Music\r\n";
        QTest::newRow("plain") << ini << "General"
                               << "Maximized Value"
                               << "2";
        QTest::newRow("key case") << ini << "general"
                                  << "MAXIMIZED VALUE"
                                  << "2";
        QTest::newRow("blanks around value trimmed") << ini << "General"
                                                     << "Manual"
                                                     << "True";
        QTest::newRow("second section") << ini << "Directories"
                                        << "FileBrowser Last Dir"
                                        << "/home/u/Music";
        QTest::newRow("missing key") << ini << "General"
                                     << "Left Hand"
                                     << "<default>";
        QTest::newRow("missing section") << ini << "Options"
                                         << "Manual"
                                         << "<default>";
        QTest::newRow("key of another section") << ini << "Directories"
                                                << "Manual"
                                                << "<default>";
        QTest::newRow("empty text") << QByteArray() << "General"
                                    << "Manual"
                                    << "<default>";
        QTest::newRow("first section wins") << QByteArray("[A]\nk=1\n[a]\nk=2\n") << "A"
                                            << "k"
                                            << "1";
        QTest::newRow("first key wins") << QByteArray("[A]\nk=1\nK=2\n") << "A"
                                        << "k"
                                        << "1";
        QTest::newRow("key only in later twin section") << QByteArray("[A]\nx=1\n[A]\nk=2\n") << "A"
                                                        << "k"
                                                        << "<default>";
        QTest::newRow("empty value") << QByteArray("[A]\nk=\n") << "A"
                                     << "k"
                                     << "";
        QTest::newRow("equals in value") << QByteArray("[A]\nk=a=b\n") << "A"
                                         << "k"
                                         << "a=b";
        QTest::newRow("no final line break") << QByteArray("[A]\nk=v") << "A"
                                             << "k"
                                             << "v";
        QTest::newRow("binary text gives default") << QByteArray("[A]\nk=v\n\0\x01\xff", 9) << "A"
                                                   << "k"
                                                   << "<default>";
        QTest::newRow("utf-8 value") << QByteArray("[A]\nk=M\xc3\xbcsik\n") << "A"
                                     << "k" << QString::fromUtf8("M\xc3\xbcsik");
    }
    void read() {
        QFETCH(QByteArray, text);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, expected);
        QCOMPARE(IniFile::value(text, section, key, QStringLiteral("<default>")), expected);
    }

    void write_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("new file") << QByteArray() << "General"
                                  << "Manual"
                                  << "True" << QByteArray("[General]\nManual=True\n");
        QTest::newRow("replace keeps spelling and ending")
            << QByteArray("[General]\r\nmanual=False\r\nX=1\r\n") << "GENERAL"
            << "Manual"
            << "True" << QByteArray("[General]\r\nmanual=True\r\nX=1\r\n");
        QTest::newRow("key added to the middle section")
            << QByteArray("[A]\na=1\n\n[B]\nb=1\n\n[C]\nc=1\n") << "B"
            << "new"
            << "2" << QByteArray("[A]\na=1\n\n[B]\nb=1\nnew=2\n\n[C]\nc=1\n");
        QTest::newRow("new section at the end, CR LF kept")
            << QByteArray("[A]\r\na=1\r\n") << "B"
            << "b"
            << "2" << QByteArray("[A]\r\na=1\r\n[B]\r\nb=2\r\n");
        QTest::newRow("file without final line break") << QByteArray("[A]\na=1") << "A"
                                                       << "b"
                                                       << "2" << QByteArray("[A]\na=1\nb=2\n");
        QTest::newRow("foreign lines kept byte for byte")
            << QByteArray("; comment  \n  odd line without equals\t\n[A]\n  a = 1  \n# x\n") << "A"
            << "a"
            << "9" << QByteArray("; comment  \n  odd line without equals\t\n[A]\na=9\n# x\n");
        QTest::newRow("value with line break written as it is")
            << QByteArray("[A]\n") << "A"
            << "k"
            << "x\r\ny" << QByteArray("[A]\nk=x\r\ny\n");
        QTest::newRow("empty section header gets the key") << QByteArray("[A]\n[B]\n") << "A"
                                                           << "k"
                                                           << "v" << QByteArray("[A]\nk=v\n[B]\n");
    }
    void write() {
        QFETCH(QByteArray, before);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QByteArray, after);
        QCOMPARE(IniFile::withValue(before, section, key, value), after);
    }

    void writeThenReadRoundTrips() {
        QByteArray text;
        text = IniFile::withValue(text, QStringLiteral("General"), QStringLiteral("Left Hand"),
                                  QStringLiteral("False"));
        text = IniFile::withValue(text, QStringLiteral("Directories"),
                                  QStringLiteral("FileBrowser Start Dir"),
                                  QStringLiteral("/media/cdrom"));
        text = IniFile::withValue(text, QStringLiteral("general"), QStringLiteral("left hand"),
                                  QStringLiteral("True"));
        QCOMPARE(IniFile::value(text, QStringLiteral("General"), QStringLiteral("Left Hand"), {}),
                 QStringLiteral("True"));
        QCOMPARE(text.count("Left Hand"), 1);
    }
};

QTEST_GUILESS_MAIN(tst_IniFile)
#include "tst_inifile.moc"
