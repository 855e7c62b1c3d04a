#include <QTest>
class X : public QObject {
    Q_OBJECT
};
QTEST_GUILESS_MAIN(X)
#include "tst_audiotracks.moc"
