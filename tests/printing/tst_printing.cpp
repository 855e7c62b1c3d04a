// The printed list of a compilation read back out of the PDF by poppler's tools, and the
// preview's paging and zoom around it.
#include "DataWindowRig.h"
#include "ReadBack.h"
#include "Rows.h"
#include "WidgetSnapshot.h"

#include "app/mdiMain.h"
#include "compilation/frmData.h"
#include "printing/PreviewPane.h"
#include "printing/PrinterDialogService.h"
#include "printing/VSPrinter.h"
#include "printing/frmPreView.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedToolbar.h"

#include <QtPrintSupport>
#include <QtTest>

namespace {

// A compilation that lists what the test gives it.
struct ListedCompilation : CompilationWindow {
    CompilationListing list;
    QWidget *widget() override { return nullptr; }
    void EnableForm(bool) override {}
    void Reload() override {}
    void Form_Activate() override {}
    bool removeSelected(bool) override { return false; }
    bool renameSelected(bool) override { return false; }
    CompilationListing listing() override { return list; }
};

// Folders as "path:files", the files named f1.txt, f2.txt, ...; or `tracks` audio tracks.
CompilationListing listOf(const QStringList &folders, int tracks = 0) {
    CompilationListing list;
    list.isData = tracks == 0;
    for (const QString &folder : folders) {
        list.folders.append({folder.section(u':', 0, -2), {}});
        for (int i = 1; i <= folder.section(u':', -1).toInt(); ++i)
            list.folders.last().files.append({QStringLiteral("f%1.txt").arg(i), "1 KB"});
    }
    for (int i = 1; i <= tracks; ++i)
        list.tracks.append({QStringLiteral("Track %1").arg(i),
                            QStringLiteral("/music/tone%1.wav").arg(i),
                            QStringLiteral("00:0%1").arg(i)});
    return list;
}

} // namespace

class tst_Printing : public QObject {
    Q_OBJECT
    std::unique_ptr<ScriptedAnswers> answers;
    ListedCompilation *compilation = nullptr;
    QTemporaryDir out;

    frmPreView *open(const CompilationListing &list) {
        compilation = new ListedCompilation;
        compilation->list = list;
        frmPreView *preview = DefaultInstance<frmPreView>::get(WindowContext{});
        preview->Form_Load();
        return preview;
    }

    // Prints the open preview through its toolbar into a PDF file, as with no printer.
    QString print() {
        const QString path = out.filePath(QStringLiteral("%1.pdf").arg(QTest::currentDataTag()));
        answers->answerFile(path);
        DefaultInstance<frmPreView>::peek()->SmartToolbar->click(QStringLiteral("PRINT"));
        // The user is told why a file is asked for; printing unloads the preview.
        const bool told =
            answers->boxes.size() == 1 && answers->boxes[0].prompt.contains("PDF file");
        return told && answers->fileBoxes.size() == 1 && !DefaultInstance<frmPreView>::exists()
                   ? path
                   : QString();
    }

private slots:
    void init() {
        if (PrinterDialogService::hasPrinter())
            QSKIP("a printer is installed: printing would not go to a PDF file");
        answers = std::make_unique<ScriptedAnswers>();
        PrinterDialogService::printer().setPageMargins({25.4, 25.4, 25.4, 25.4},
                                                       QPageLayout::Millimeter);
    }

    void cleanup() {
        DefaultInstance<frmPreView>::unload();
        PrinterDialogService::setAnswerer({});
        delete compilation;
        compilation = nullptr;
        answers.reset();
    }

    void printedList_data() {
        QTest::addColumn<CompilationListing>("list");
        // Per page, lines that must be there and a pattern that must not match.
        columns<QList<QStringList>, QStringList>("present", "absent");
        // The shown document is the second composition: its numbers go on from the first one's.
        QTest::newRow("two folders, five files")
            << listOf({"VOL:1", "VOL\\docs:2", "VOL\\docs\\old:2"})
            << QList<QStringList>{{"File List", "No: File Name: File Size:", "VOL Root",
                                   "5. f1.txt 1 KB", "VOL\\docs Directory", "7. f2.txt 1 KB",
                                   "VOL\\docs\\old Directory", "9. f2.txt 1 KB", "Page 1 of 1"}}
            << QStringList{"^(4|10)\\."};
        QTest::newRow("empty") << listOf({"VOL:0"})
                               << QList<QStringList>{{"VOL Root", "Page 1 of 1"}}
                               << QStringList{"^0\\."};
        // The folder line and 33 files fill the first page.
        QTest::newRow("forty files")
            << listOf({"VOL:40"})
            << QList<QStringList>{{"40. f1.txt", "72. f33.txt", "Page 1 of 2"},
                                  {"File Name:", "73. f34.txt", "79. f40.txt", "Page 2 of 2"}}
            << QStringList{"^73\\.", "VOL|^72\\."};
        // 33 files fill line 34 exactly; the next folder opens the second page.
        QTest::newRow("full page")
            << listOf({"VOL:33", "VOL\\b:1"})
            << QList<QStringList>{{"66. f33.txt"}, {"VOL\\b Directory", "67. f1.txt"}}
            << QStringList{"VOL\\\\b", "^66\\."};
        // A long folder name is cut short before the next column.
        QTest::newRow("long name")
            << listOf({"VOL:0", "VOL\\" + QString(150, u'x') + "-tail:0"})
            << QList<QStringList>{{"xxxxxxxx… Directory"}} << QStringList{"-tail"};
        QTest::newRow("audio") << listOf({}, 3)
                               << QList<QStringList>{{"No: File Name: Track: Time:",
                                                      "1. /music/tone1.wav Track 1 00:01",
                                                      "3. /music/tone3.wav Track 3 00:03",
                                                      "Page 1 of 1"}}
                               << QStringList{"^4\\."};
    }

    void printedList() {
        auto [list, present, absent] =
            fetch<CompilationListing, QList<QStringList>, QStringList>("list", "present", "absent");
        open(list);
        const QString pdf = print();
        QVERIFY(!pdf.isEmpty());
        QCOMPARE(ReadBack::pdfInfo(pdf, "Pages").toInt(), present.size());
        QCOMPARE(ReadBack::pdfInfo(pdf, "Title"), QStringLiteral("Tessaly FileList"));
        // The face asked for is the one embedded (Wine's Tahoma, installed by scripts/setup).
        QVERIFY(ReadBack::run("pdffonts", {pdf}).contains("Tahoma"));
        for (int page = 1; page <= present.size(); ++page) {
            const QString text = ReadBack::pdfText(pdf, page);
            for (const QString &line : present[page - 1] + QStringList{"Printed by:", "Version "})
                QVERIFY2(text.contains(line), qPrintable(line + " missing from:\n" + text));
            const QRegularExpression unwanted(absent.value(page - 1, "^$"),
                                              QRegularExpression::MultilineOption);
            QVERIFY2(!unwanted.match(text).hasMatch(),
                     qPrintable(unwanted.pattern() + " in:\n" + text));
        }
    }

    // The page box's margin reaches the paper and the margins label: "No:" stands 1 mm inside it.
    void leftMarginMovesTheText() {
        PrinterDialogService::setAnswerer([](PrinterDialogService::Kind kind, QPrinter &printer) {
            printer.setPageMargins({30, 20, 25.4, 25.4}, QPageLayout::Millimeter);
            return kind == PrinterDialogService::PageBox;
        });
        frmPreView *preview = open(listOf({"VOL:1"}));
        preview->SmartToolbar->click(QStringLiteral("PAGESETUP"));
        QCOMPARE(preview->SmartToolbar->Item("LH")->Text(), QStringLiteral(" L:30.0 T:20.0"));
        const QString pdf = print();
        QVERIFY(qAbs(ReadBack::pdfWordLeft(pdf, "No:") - 31 * 72 / 25.4) < 1.0);
        QVERIFY(qAbs(ReadBack::pdfWordLeft(pdf, "Root") - 160 * 72 / 25.4) < 1.0);
    }

    void pagingAndZoom() {
        frmPreView *preview = open(listOf({}, 80)); // 34 + 34 + 12 lines
        KeyedToolbar *bar = preview->SmartToolbar;
        // Named after the page shown and the pages at a time; the scroll bar follows the page.
        auto state = [&](const char *name) {
            return WidgetSnapshot::differences(preview, QLatin1String(name)) +
                   QString::number(preview->preview->PreviewPage());
        };
        QCOMPARE(state("printing-page-1"), "1");
        bar->Item("PREVIOUS")->setEnabled(true);
        bar->click("PREVIOUS"); // on page 1 it turns itself off and stays
        QCOMPARE(state("printing-page-1"), "1");
        bar->click("NEXT");
        QCOMPARE(state("printing-page-2"), "2");
        bar->click("NEXT");
        QCOMPARE(state("printing-page-3"), "3");
        auto *view = qobject_cast<QComboBox *>(bar->Item("VIEW")->control());
        auto *zoom = qobject_cast<QLineEdit *>(bar->Item("ZOOM")->control());
        auto choose = [&](const QString &entry) {
            view->setCurrentIndex(view->findText(entry));
            emit view->activated(view->currentIndex());
        };
        QCOMPARE(view->itemText(4), QStringLiteral("PageWidht"));
        QVERIFY(!zoom->isEnabled());
        choose("TwoPages");
        QCOMPARE(state("printing-two-pages-3"), "3");
        preview->scrlPage->setValue(1);
        QCOMPARE(state("printing-two-pages-1"), "1");
        preview->scrlPage->setValue(2); // pages 2 and 3 shown: nothing comes after
        QCOMPARE(state("printing-two-pages-2"), "2");
        QWheelEvent up({10, 10}, {10, 10}, {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                       false);
        QCoreApplication::sendEvent(preview->preview, &up); // the wheel turns a view back
        QCOMPARE(state("printing-two-pages-1"), "1");
        QCOMPARE(zoom->text(), QString::number(qRound(preview->preview->Zoom())));
        // A percentage is typed in the Percentage view only.
        choose("Percentage");
        zoom->selectAll();
        QTest::keyClicks(zoom, "150");
        QTest::keyClick(zoom, Qt::Key_Return);
        QCOMPARE(preview->preview->Zoom(), 150.0);
        choose("WholePage");
        QVERIFY(!zoom->isEnabled() && preview->preview->Zoom() != 150.0);
    }

    // The preview lets events in between pages; a print or a close meanwhile must not pull the
    // document from under the composition.
    void composingKeepsClicksOut() {
        frmPreView *preview = open(listOf({}, 80));
        connect(preview->vspBurner, &VSPrinter::EndPage, preview, [preview] {
            preview->SmartToolbar->click("PRINT");
            preview->close();
        });
        QVERIFY(preview->DoDocument());
        QVERIFY(answers->boxes.isEmpty() && answers->fileBoxes.isEmpty());
        QVERIFY(!DefaultInstance<frmPreView>::exists()); // closed once the pages were done
    }

    // The frame's print command on a real data window: folders in the order they were dropped,
    // each with its full path, the root first.
    void printCommandKeepsTheOrderFoldersWereAdded() {
        answers.reset();
        DataWindowRig rig;
        QVERIFY(rig.started());
        const QString zeta = rig.source("zeta/z1.txt", QByteArray(4096, 'z'));
        rig.source("zeta/inner/i1.txt");
        rig.drop(rig.data()->tvwDirectories, {QFileInfo(zeta).path()});
        rig.drop(rig.data()->tvwDirectories, {QFileInfo(rig.source("alpha/a1.txt")).path()});
        const QString pdf = out.filePath(QStringLiteral("frame.pdf"));
        rig.answers().answerFile(pdf);
        rig.frame()->runCommand(QStringLiteral("PRINT"));
        const QString root = rig.data()->node("\\")->text(0);
        const QString text = ReadBack::pdfText(pdf);
        QRegularExpression folder(QStringLiteral("^(.*) (Root|Directory)$"),
                                  QRegularExpression::MultilineOption);
        QStringList folders;
        for (const QRegularExpressionMatch &m : folder.globalMatch(text))
            folders.append(m.captured(1));
        QCOMPARE(folders,
                 (QStringList{root, root + "\\zeta", root + "\\zeta\\inner", root + "\\alpha"}));
        QVERIFY2(text.contains(QStringLiteral("3. z1.txt 4 KB")), qPrintable(text));
    }
};

QTEST_MAIN(tst_Printing)
#include "tst_printing.moc"
