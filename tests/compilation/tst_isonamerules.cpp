#include "Rows.h"
#include "compilation/IsoNameRules.h"

#include <QtTest>

class tst_IsoNameRules : public QObject {
    Q_OBJECT
private slots:
    void rules_data() {
        columns<QString, int, int>("name", "fileSystem", "level");
        QTest::addColumn<QString>("message"); // empty: the name passes
        const QString blank = "Item name cannot be blank.";
        const QString joliet = "Item Name violates Joliet naming rules (64 Char Max).";
        const QString level1 = "Item Name violates ISO9660 Level 1 naming rules (8 + 3 Char Max).";
        const QString level2 = "Item Name violates ISO9660 Level 2 naming rules (31 Char Max).";
        QTest::newRow("empty, Joliet") << "" << 1 << 2 << blank;
        QTest::newRow("empty, ISO 9660 only") << "" << 0 << 1 << blank;
        QTest::newRow("a lone dot is a name") << "." << 1 << 1 << "";
        QTest::newRow("64 passes Joliet, then fails level 2")
            << QString(64, u'a') << 1 << 3 << level2;
        QTest::newRow("64 passes Joliet, level 1 does not")
            << QString(64, u'a') << 1 << 1 << level1;
        QTest::newRow("65 fails Joliet") << QString(65, u'a') << 1 << 2 << joliet;
        QTest::newRow("31 passes level 2") << QString(31, u'a') << 1 << 2 << "";
        QTest::newRow("32 fails level 2") << QString(32, u'a') << 1 << 2 << level2;
        QTest::newRow("README level 1") << "README" << 1 << 1 << "";
        QTest::newRow("README.T level 1, dot counted in the name") << "README.T" << 1 << 1 << "";
        QTest::newRow("ABCDEFG.TX level 1") << "ABCDEFG.TX" << 1 << 1 << "";
        QTest::newRow("A.TXT level 1, dot counted in the extension") << "A.TXT" << 1 << 1 << level1;
        QTest::newRow("ABCDEFGH.T level 1, name of 9 with its dot")
            << "ABCDEFGH.T" << 1 << 1 << level1;
        QTest::newRow("first dot splits") << "AB.C.D" << 1 << 1 << level1;
        QTest::newRow("ISO 9660 only: any length") << QString(200, u'x') << 0 << 1 << "";
        QTest::newRow("ISO 9660 only, level 1 not checked") << "A.TXT" << 0 << 1 << "";
        QTest::newRow("characters are not checked") << "a*b?c" << 1 << 2 << "";
    }
    void rules() {
        auto [name, fileSystem, level, message] =
            fetch<QString, int, int, QString>("name", "fileSystem", "level", "message");
        QCOMPARE(IsoNameRules::violation(name, fileSystem, level), message);
    }
};

QTEST_GUILESS_MAIN(tst_IsoNameRules)
#include "tst_isonamerules.moc"
