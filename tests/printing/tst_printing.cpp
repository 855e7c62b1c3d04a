// The printed list of a compilation, read back out of the PDF by poppler's tools, and the
// preview's paging and zoom around it.
#include "DataWindowRig.h"
#include "PdfReadBack.h"
#include "ReadBack.h"
#include "ScriptedAnswers.h"

#include "app/CompilationWindow.h"
#include "app/mdiMain.h"
#include "compilation/frmData.h"
#include "printing/PreviewPane.h"
#include "printing/PrinterDialogService.h"
#include "printing/VSPrinter.h"
#include "printing/frmPreView.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedToolbar.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPrinter>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidgetItem>

namespace {

// A compilation that lists what the test gives it.
class ListedCompilation : public CompilationWindow {
public:
    CompilationListing list;
    QWidget *widget() override { return nullptr; }
    void EnableForm(bool) override {}
    void Reload() override {}
    void Form_Activate() override {}
    bool removeSelected(bool) override { return false; }
    bool renameSelected(bool) override { return false; }
    CompilationListing listing() override { return list; }
};

// Folders as "name:files" ("VOL:3"), the files named f1, f2, ... of 1 KB.
CompilationListing folderList(const QStringList &folders) {
    CompilationListing list;
    for (const QString &spec : folders) {
        CompilationListing::Folder folder{spec.section(u':', 0, 0), {}};
        for (int i = 1; i <= spec.section(u':', 1).toInt(); ++i)
            folder.files.append({QStringLiteral("f%1.txt").arg(i), QStringLiteral("1 KB")});
        list.folders.append(folder);
    }
    return list;
}

CompilationListing audioList(int tracks) {
    CompilationListing list;
    list.isData = false;
    for (int i = 1; i <= tracks; ++i)
        list.tracks.append({QStringLiteral("Track %1").arg(i),
                            QStringLiteral("/music/tone%1.wav").arg(i),
                            QStringLiteral("00:0%1").arg(i % 10)});
    return list;
}

frmPreView *openPreview() {
    frmPreView *preview = DefaultInstance<frmPreView>::get(WindowContext{});
    preview->Form_Load();
    return preview;
}

// The lines of a page's text that hold something, squeezed to single spaces.
QStringList lines(const QString &text) {
    QStringList out;
    for (QString line : text.split(u'\n')) {
        line = line.simplified();
        if (!line.isEmpty())
            out.append(line);
    }
    return out;
}

} // namespace

class tst_Printing : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void dataList_data();
    void dataList();
    void audioNumbersFromOne();
    void leftMarginMovesTheText_data();
    void leftMarginMovesTheText();
    void longNamesStayInTheirColumn();
    void pagingFollowsTheEnds();
    void viewAndZoom();
    void printCommandKeepsTheOrderFoldersWereAdded();

private:
    // Prints the open preview through its toolbar into a PDF file; its path.
    QString printToPdf();

    std::unique_ptr<ScriptedAnswers> answers;
    std::unique_ptr<ListedCompilation> compilation;
    QTemporaryDir out;
};

void tst_Printing::init() {
    if (PrinterDialogService::hasPrinter())
        QSKIP("a printer is installed: printing would not go to a PDF file");
    answers = std::make_unique<ScriptedAnswers>();
    compilation = std::make_unique<ListedCompilation>();
    PrinterDialogService::printer().setPageMargins(QMarginsF(25.4, 25.4, 25.4, 25.4),
                                                   QPageLayout::Millimeter);
}

void tst_Printing::cleanup() {
    DefaultInstance<frmPreView>::unload();
    PrinterDialogService::setAnswerer({});
    compilation.reset();
    answers.reset();
}

QString tst_Printing::printToPdf() {
    static int made = 0;
    const QString path = out.filePath(QStringLiteral("list%1.pdf").arg(++made));
    answers->answerFile(path);
    DefaultInstance<frmPreView>::peek()->SmartToolbar->click(QStringLiteral("PRINT"));
    // No printer: the user is told, asked for a file, and the preview is gone.
    [&] {
        QCOMPARE(answers->boxes.size(), 1);
        QVERIFY(answers->boxes.first().prompt.contains(QStringLiteral("PDF file")));
        QCOMPARE(answers->fileBoxes.size(), 1);
        QVERIFY(!DefaultInstance<frmPreView>::exists());
    }();
    return path;
}

void tst_Printing::dataList_data() {
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<int>("pages");
    // Per page, the lines expected on it and those that must not be there.
    QTest::addColumn<QList<QStringList>>("present");
    QTest::addColumn<QList<QStringList>>("absent");
    // The shown document is the second composition: its numbers go on from the first one's.
    QTest::newRow("two folders, five files")
        << QStringList{"VOL:1", "VOL\\docs:2", "VOL\\docs\\old:2"} << 1
        << QList<QStringList>{{"File List", "No: File Name: File Size:", "VOL Root",
                               "5. f1.txt 1 KB", "VOL\\docs Directory", "6. f1.txt 1 KB",
                               "7. f2.txt 1 KB", "VOL\\docs\\old Directory", "9. f2.txt 1 KB",
                               "Page 1 of 1"}}
        << QList<QStringList>{{"4. f1.txt 1 KB", "10. f1.txt 1 KB"}};
    QTest::newRow("empty compilation")
        << QStringList{"VOL:0"} << 1 << QList<QStringList>{{"VOL Root", "Page 1 of 1"}}
        << QList<QStringList>{{"0."}};
    // Forty files: the folder line and 33 files fill the first page.
    QTest::newRow("forty files in the root")
        << QStringList{"VOL:40"} << 2
        << QList<QStringList>{{"VOL Root", "40. f1.txt", "72. f33.txt", "Page 1 of 2"},
                              {"File Name:", "73. f34.txt", "79. f40.txt", "Page 2 of 2"}}
        << QList<QStringList>{{"73."}, {"VOL Root", "72."}};
    // 33 files fill line 34 exactly; the next folder opens the second page.
    QTest::newRow("a full page turns before the next folder")
        << QStringList{"VOL:33", "VOL\\b:1"} << 2
        << QList<QStringList>{{"66. f33.txt", "Page 1 of 2"}, {"VOL\\b Directory", "67. f1.txt"}}
        << QList<QStringList>{{"VOL\\b"}, {"66."}};
}

void tst_Printing::dataList() {
    QFETCH(QStringList, folders);
    QFETCH(int, pages);
    QFETCH(QList<QStringList>, present);
    QFETCH(QList<QStringList>, absent);
    compilation->list = folderList(folders);
    openPreview();
    const QString pdf = printToPdf();
    QCOMPARE(PdfReadBack::info(pdf, "Pages").toInt(), pages);
    QCOMPARE(PdfReadBack::info(pdf, "Title"), QStringLiteral("Tessaly FileList"));
    for (int page = 1; page <= pages; ++page) {
        const QStringList shown = lines(PdfReadBack::text(pdf, page));
        const QString all = shown.join(u'\n');
        for (const QString &line : present.at(page - 1))
            QVERIFY2(shown.contains(line) || all.contains(line),
                     qPrintable(line + QStringLiteral(" missing from:\n") + all));
        for (const QString &word : absent.at(page - 1))
            QVERIFY2(!QRegularExpression(QStringLiteral("(^|\\s)") +
                                             QRegularExpression::escape(word) +
                                             QStringLiteral("(\\s|$)"),
                                         QRegularExpression::MultilineOption)
                          .match(all)
                          .hasMatch(),
                     qPrintable(word + QStringLiteral(" found in:\n") + all));
        QVERIFY(all.contains(QStringLiteral("Printed by:")) &&
                all.contains(QStringLiteral("Version ")));
    }
}

void tst_Printing::audioNumbersFromOne() {
    compilation->list = audioList(3);
    openPreview();
    const QString pdf = printToPdf();
    // The face asked for is the one embedded (Wine's Tahoma, installed by scripts/setup).
    QVERIFY(ReadBack::run("pdffonts", {pdf}).contains("Tahoma"));
    const QStringList shown = lines(PdfReadBack::text(pdf));
    QVERIFY2(shown.contains("No: File Name: Track: Time:"), qPrintable(shown.join(u'\n')));
    for (int i = 1; i <= 3; ++i)
        QVERIFY2(shown.contains(QStringLiteral("%1. /music/tone%1.wav Track %1 00:0%1").arg(i)),
                 qPrintable(shown.join(u'\n')));
    QVERIFY(shown.last().endsWith("Page 1 of 1"));
}

void tst_Printing::leftMarginMovesTheText_data() {
    QTest::addColumn<double>("left");
    QTest::newRow("default inch") << 25.4;
    QTest::newRow("30 mm") << 30.0;
}

// The page box's margin reaches the paper: "No:" stands 1 mm inside it.
void tst_Printing::leftMarginMovesTheText() {
    QFETCH(double, left);
    PrinterDialogService::setAnswerer([left](PrinterDialogService::Kind kind, QPrinter &printer) {
        if (kind != PrinterDialogService::PageBox)
            return false;
        printer.setPageMargins(QMarginsF(left, 20, 25.4, 25.4), QPageLayout::Millimeter);
        return true;
    });
    compilation->list = folderList({"VOL:1"});
    frmPreView *preview = openPreview();
    preview->SmartToolbar->click(QStringLiteral("PAGESETUP"));
    QCOMPARE(preview->SmartToolbar->Item("LH")->Text(),
             QStringLiteral(" L:%1 T:20.0").arg(left, 0, 'f', 1));
    const QString pdf = printToPdf();
    QVERIFY(qAbs(PdfReadBack::wordLeft(pdf, "No:") - (left + 1) * 72 / 25.4) < 1.0);
    QVERIFY(qAbs(PdfReadBack::wordLeft(pdf, "Root") - (left + 130) * 72 / 25.4) < 1.0);
}

void tst_Printing::longNamesStayInTheirColumn() {
    compilation->list = folderList({"VOL:1"});
    const QString name = QStringLiteral("a-very-long-name-") + QString(200, u'x') + "-tail.txt";
    compilation->list.folders[0].files[0].name = name;
    openPreview();
    const QString pdf = printToPdf();
    const QString all = PdfReadBack::text(pdf);
    QVERIFY2(all.contains("a-very-long-name-") && !all.contains("-tail.txt"), qPrintable(all));
    // The size column keeps its place.
    QVERIFY(qAbs(PdfReadBack::wordLeft(pdf, "KB") - PdfReadBack::wordLeft(pdf, "Size:")) < 40);
}

void tst_Printing::pagingFollowsTheEnds() {
    compilation->list = audioList(80); // 34 + 34 + 12 lines
    frmPreView *preview = openPreview();
    QCOMPARE(preview->vspBurner->PageCount(), 3);
    KeyedToolbar *bar = preview->SmartToolbar;
    auto state = [&] {
        return QStringLiteral("%1 %2%3 bar %4/%5")
            .arg(preview->preview->PreviewPage())
            .arg(bar->Item("PREVIOUS")->Enabled() ? "P" : "-")
            .arg(bar->Item("NEXT")->Enabled() ? "N" : "-")
            .arg(preview->scrlPage->value())
            .arg(preview->scrlPage->maximum());
    };
    QCOMPARE(state(), QStringLiteral("1 -N bar 1/3"));
    bar->Item("PREVIOUS")->setEnabled(true);
    bar->click("PREVIOUS"); // on page 1 it turns itself off and stays
    QCOMPARE(state(), QStringLiteral("1 -N bar 1/3"));
    bar->click("NEXT");
    QCOMPARE(state(), QStringLiteral("2 PN bar 2/3"));
    bar->click("NEXT");
    QCOMPARE(state(), QStringLiteral("3 P- bar 3/3"));
    preview->scrlPage->setValue(1);
    QCOMPARE(state(), QStringLiteral("1 -N bar 1/3"));
}

void tst_Printing::viewAndZoom() {
    compilation->list = audioList(80);
    frmPreView *preview = openPreview();
    KeyedToolbar *bar = preview->SmartToolbar;
    auto *view = qobject_cast<QComboBox *>(bar->Item("VIEW")->control());
    auto *zoom = qobject_cast<QLineEdit *>(bar->Item("ZOOM")->control());
    QVERIFY(view && zoom);
    QCOMPARE(view->currentText(), QStringLiteral("WholePage"));
    QCOMPARE(view->itemText(4), QStringLiteral("PageWidht"));
    QVERIFY(!zoom->isEnabled());
    auto choose = [&](const QString &entry) {
        view->setCurrentIndex(view->findText(entry));
        emit view->activated(view->currentIndex());
    };
    choose("TwoPages");
    QCOMPARE(preview->scrlPage->singleStep(), 2);
    QCOMPARE(preview->scrlPage->pageStep(), 2);
    // Pages 1 and 2 shown: NEXT stays on while page 3 is still to come.
    QVERIFY(bar->Item("NEXT")->Enabled());
    preview->scrlPage->setValue(2);
    QVERIFY(!bar->Item("NEXT")->Enabled());
    const double fitted = preview->preview->Zoom();
    QCOMPARE(zoom->text(), QString::number(qRound(fitted)));
    // A percentage is typed in the Percentage view only.
    choose("Percentage");
    QVERIFY(zoom->isEnabled());
    QTest::keyClicks(zoom, QStringLiteral("0")); // "NN" becomes "NN0"
    const double typed = zoom->text().toDouble();
    QTest::keyClick(zoom, Qt::Key_Return);
    QCOMPARE(preview->preview->Zoom(), std::clamp(typed, 10.0, 500.0));
    choose("WholePage");
    QVERIFY(!zoom->isEnabled());
    QVERIFY(preview->preview->Zoom() != std::clamp(typed, 10.0, 500.0));
}

// The frame's print command on a real data window: folders in the order they were dropped,
// each with its full path, the root first.
void tst_Printing::printCommandKeepsTheOrderFoldersWereAdded() {
    compilation.reset();
    answers.reset();
    DataWindowRig rig;
    QVERIFY(rig.started());
    const QString zeta = rig.source("zeta/z1.txt", QByteArray(4096, 'z'));
    rig.source("zeta/inner/i1.txt");
    const QString alpha = rig.source("alpha/a1.txt");
    rig.drop(rig.data()->tvwDirectories, {QFileInfo(zeta).path()});
    rig.drop(rig.data()->tvwDirectories, {QFileInfo(alpha).path()});
    const QString pdf = out.filePath(QStringLiteral("frame.pdf"));
    rig.answers().answerFile(pdf);
    rig.frame()->runCommand(QStringLiteral("PRINT"));
    const QStringList shown = lines(PdfReadBack::text(pdf));
    const QString root = rig.data()->node("\\")->text(0);
    QStringList folders;
    for (const QString &line : shown)
        if (line.endsWith(" Root") || line.endsWith(" Directory"))
            folders.append(line);
    QCOMPARE(folders, (QStringList{root + " Root", root + "\\zeta Directory",
                                   root + "\\zeta\\inner Directory", root + "\\alpha Directory"}));
    QVERIFY2(shown.contains(QStringLiteral("3. z1.txt 4 KB")), qPrintable(shown.join(u'\n')));
    QCOMPARE(rig.takeBoxes().size(), 1);
}

QTEST_MAIN(tst_Printing)
#include "tst_printing.moc"
