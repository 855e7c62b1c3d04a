#include "Rows.h"
#include "base/IniFile.h"

#include <QtTest>

struct IniRead {
    QByteArray text;
    QString section, key, expected;
};
struct IniWrite {
    QByteArray before;
    QString section, key, value;
    QByteArray after;
};

class tst_IniFile : public QObject {
    Q_OBJECT
private slots:
    void read_data() {
        const QByteArray ini = "[General]\r\nMaximized Value=2\r\nManual = True \r\n"
                               "[Directories]\r\nFileBrowser Last Dir=/home/u/Music\r\n";
        addRows<IniRead>({
            {"plain", {ini, "General", "Maximized Value", "2"}},
            {"key case", {ini, "general", "MAXIMIZED VALUE", "2"}},
            {"blanks around value trimmed", {ini, "General", "Manual", "True"}},
            {"second section", {ini, "Directories", "FileBrowser Last Dir", "/home/u/Music"}},
            {"missing key", {ini, "General", "Left Hand", "<default>"}},
            {"missing section", {ini, "Options", "Manual", "<default>"}},
            {"key of another section", {ini, "Directories", "Manual", "<default>"}},
            {"empty text", {"", "General", "Manual", "<default>"}},
            {"first section wins", {"[A]\nk=1\n[a]\nk=2\n", "A", "k", "1"}},
            {"first key wins", {"[A]\nk=1\nK=2\n", "A", "k", "1"}},
            {"key only in later twin section", {"[A]\nx=1\n[A]\nk=2\n", "A", "k", "<default>"}},
            {"empty value", {"[A]\nk=\n", "A", "k", ""}},
            {"equals in value", {"[A]\nk=a=b\n", "A", "k", "a=b"}},
            {"no final line break", {"[A]\nk=v", "A", "k", "v"}},
            {"utf-8 value", {"[A]\nk=M\xc3\xbcsik\n", "A", "k", "M\xc3\xbcsik"}},
            {"binary text gives default",
             {QByteArray("[A]\nk=v\n\0\x01\xff", 9), "A", "k", "<default>"}},
        });
    }
    void read() {
        QFETCH(IniRead, row);
        QCOMPARE(IniFile::value(row.text, row.section, row.key, QStringLiteral("<default>")),
                 row.expected);
    }

    void write_data() {
        addRows<IniWrite>({
            {"new file", {"", "General", "Manual", "True", "[General]\nManual=True\n"}},
            {"replace keeps spelling and ending",
             {"[General]\r\nmanual=False\r\nX=1\r\n", "GENERAL", "Manual", "True",
              "[General]\r\nmanual=True\r\nX=1\r\n"}},
            {"key added to the middle section",
             {"[A]\na=1\n\n[B]\nb=1\n\n[C]\nc=1\n", "B", "new", "2",
              "[A]\na=1\n\n[B]\nb=1\nnew=2\n\n[C]\nc=1\n"}},
            {"new section at the end, CR LF kept",
             {"[A]\r\na=1\r\n", "B", "b", "2", "[A]\r\na=1\r\n[B]\r\nb=2\r\n"}},
            {"file without final line break", {"[A]\na=1", "A", "b", "2", "[A]\na=1\nb=2\n"}},
            {"foreign lines kept byte for byte",
             {"; comment  \n  odd line without equals\t\n[A]\n  a = 1  \n# x\n", "A", "a", "9",
              "; comment  \n  odd line without equals\t\n[A]\na=9\n# x\n"}},
            {"value with line break written as it is",
             {"[A]\n", "A", "k", "x\r\ny", "[A]\nk=x\r\ny\n"}},
            {"empty section header gets the key", {"[A]\n[B]\n", "A", "k", "v", "[A]\nk=v\n[B]\n"}},
        });
    }
    void write() {
        QFETCH(IniWrite, row);
        QCOMPARE(IniFile::withValue(row.before, row.section, row.key, row.value), row.after);
    }
};

QTEST_GUILESS_MAIN(tst_IniFile)
#include "tst_inifile.moc"
