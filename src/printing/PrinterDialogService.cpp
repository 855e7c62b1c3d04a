#include "PrinterDialogService.h"
#include "VSPrinter.h"
#include "base/App.h"
#include "widgets/FileBoxService.h"
#include "widgets/MessageBoxService.h"

#include <QPageSetupDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace {

PrinterDialogService::Answerer &answerer() {
    static PrinterDialogService::Answerer instance;
    return instance;
}

void showPrinterError(int code) {
    MsgBox(QStringLiteral("The VSPrinter control raised the Error event with the ") +
               QString::number(code) + QStringLiteral(" code."),
           vbCritical, App::ProductName() + QStringLiteral(" - Critical"));
}

// The codes of the print job's own failures.
constexpr int CantStartJob = 1;
constexpr int CantWritePage = 2;

} // namespace

QPrinter &PrinterDialogService::printer() {
    static QPrinter *instance = [] {
        auto *made = new QPrinter(QPrinter::HighResolution);
        // Positions are taken from the paper's corner, not from the printable area.
        made->setFullPage(true);
        made->setPageMargins(QMarginsF(25.4, 25.4, 25.4, 25.4), QPageLayout::Millimeter);
        return made;
    }();
    return *instance;
}

void PrinterDialogService::setAnswerer(Answerer answer) {
    answerer() = std::move(answer);
}

bool PrinterDialogService::PrinterDialog(Kind kind, QWidget *parent) {
    QPrinter &chosen = printer();
    if (answerer())
        return answerer()(kind, chosen);
    if (kind == PageBox) {
        QPageSetupDialog box(&chosen, parent);
        return box.exec() == QDialog::Accepted;
    }
    QPrintDialog box(&chosen, parent);
    box.setOption(QAbstractPrintDialog::PrintToFile);
    return box.exec() == QDialog::Accepted;
}

bool PrinterDialogService::hasPrinter() {
    return !QPrinterInfo::availablePrinterNames().isEmpty();
}

bool PrinterDialogService::printOn(const VSPrinter &document, QPrinter &target) {
    target.setDocName(document.DocName);
    target.setFullPage(true);
    QPainter painter;
    if (!painter.begin(&target)) {
        showPrinterError(CantStartJob);
        return false;
    }
    const double pixelsPerMm = target.resolution() / 25.4;
    for (int page = 1; page <= document.PageCount(); ++page) {
        if (page > 1 && !target.newPage()) {
            painter.end();
            showPrinterError(CantWritePage);
            return false;
        }
        document.renderPage(page, painter, QPointF(0, 0), pixelsPerMm);
    }
    return painter.end();
}

bool PrinterDialogService::printToPdf(const VSPrinter &document, const QString &path) {
    QPrinter pdf(QPrinter::HighResolution);
    pdf.setOutputFormat(QPrinter::PdfFormat);
    pdf.setOutputFileName(path);
    pdf.setPageLayout(document.pageLayout());
    pdf.setCreator(App::ProductName());
    return printOn(document, pdf);
}

bool PrinterDialogService::PrintDoc(const VSPrinter &document, QWidget *parent) {
    Q_UNUSED(parent);
    QPrinter &chosen = printer();
    // A file chosen in the printer box, or a real printer: no question to ask.
    if (!chosen.outputFileName().isEmpty() || hasPrinter()) {
        chosen.setPageLayout(document.pageLayout());
        return printOn(document, chosen);
    }
    MsgBox(QStringLiteral("No printer is installed on this computer. The list will be saved as a "
                          "PDF file instead."),
           vbInformation, App::ProductName() + QStringLiteral(" - Information"));
    FileBoxService::Request request;
    request.mode = FileBoxService::Mode::Save;
    request.title = QStringLiteral("Save the List as PDF");
    request.fileName = document.DocName + QStringLiteral(".pdf");
    request.filter = QStringLiteral("PDF file (*.pdf)|*.pdf");
    const std::optional<QString> path = FileBoxService::ask(request);
    if (!path || path->isEmpty())
        return false;
    return printToPdf(document, *path);
}
