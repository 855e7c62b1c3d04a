#include "frmPreView.h"
#include "PreviewPane.h"
#include "PrinterDialogService.h"
#include "VSPrinter.h"
#include "app/clsNetUserName.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "base/Format.h"
#include "diagnostics/TrappedConnect.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/PictureList.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPrinter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

const QStringList &viewNames() {
    // The entries stand in the order of the zoom modes; the fifth is spelled as users know it.
    static const QStringList names = {
        QStringLiteral("Percentage"), QStringLiteral("Thumbnail"), QStringLiteral("TwoPages"),
        QStringLiteral("WholePage"),  QStringLiteral("PageWidht"), QStringLiteral("Stretch"),
    };
    return names;
}

constexpr double LinePitch = 6;  // millimetres from one list line to the next
constexpr double FirstLine = 30; // below the top margin, the line before the first
constexpr int LinesPerPage = 34;

} // namespace

frmPreView::frmPreView(const WindowContext &context)
    : QWidget(context.frame ? context.frame->frameWidget() : nullptr, Qt::Window)
    , m_context(context) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::ApplicationModal);
    buildControls();
}

frmPreView::~frmPreView() {
    DefaultInstance<frmPreView>::release(this);
}

void frmPreView::buildControls() {
    vspBurner = new VSPrinter(this);
    auto *bar = new QToolBar(this);
    bar->setIconSize(QSize(16, 16));
    SmartToolbar = new KeyedToolbar(bar, this);
    SmartToolbar->addItem(QStringLiteral("EXIT"), QStringLiteral("Close"));
    SmartToolbar->addItem(QStringLiteral("PRINT"), QStringLiteral("Print"));
    SmartToolbar->addItem(QStringLiteral("PRINTERSETTINGS"), QStringLiteral("Printer Setup"));
    SmartToolbar->addItem(QStringLiteral("PAGESETUP"), QStringLiteral("Page Setup"));
    SmartToolbar->addSeparator();
    SmartToolbar->addItem(QStringLiteral("PREVIOUS"), QStringLiteral("Previous Page"),
                          QStringLiteral("MOVEUP"));
    SmartToolbar->addItem(QStringLiteral("NEXT"), QStringLiteral("Next Page"),
                          QStringLiteral("BROWSEFOLDER"));
    SmartToolbar->addSeparator();
    SmartToolbar->addToggle(QStringLiteral("VISAMARGINAL"), QStringLiteral("Show Margins"),
                            QStringLiteral("LABEL"));
    SmartToolbar->addTextBox(QStringLiteral("ZOOM"), QStringLiteral("Zoom (%)"), 50);
    SmartToolbar->addList(QStringLiteral("VIEW"), QStringLiteral("View"), viewNames());
    SmartToolbar->addSeparator();
    SmartToolbar->addLabel(QStringLiteral("LH"), QString());
    // Arrows read better than folder pictures for paging.
    SmartToolbar->Item(QStringLiteral("PREVIOUS"))
        ->action()
        ->setIcon(style()->standardIcon(QStyle::SP_ArrowLeft));
    SmartToolbar->Item(QStringLiteral("NEXT"))
        ->action()
        ->setIcon(style()->standardIcon(QStyle::SP_ArrowRight));
    bar->setToolButtonStyle(Qt::ToolButtonIconOnly);

    auto *area = new QScrollArea(this);
    preview = new PreviewPane(vspBurner, area);
    scrlPage = new QScrollBar(Qt::Vertical, this);
    scrlPage->setRange(1, 1);

    auto *body = new QHBoxLayout;
    body->setContentsMargins(0, 0, 0, 0);
    body->setSpacing(0);
    body->addWidget(area, 1);
    body->addWidget(scrlPage);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addLayout(body, 1);
    resize(760, 720);

    TRAPPED_CONNECT(SmartToolbar, &KeyedToolbar::Click, frmPreView, smartToolbar_Click);
    TRAPPED_CONNECT(SmartToolbar, &KeyedToolbar::Change, frmPreView, SmartToolbar_Change);
    TRAPPED_CONNECT(scrlPage, &QScrollBar::valueChanged, frmPreView, scrlPage_Change);
    TRAPPED_CONNECT(vspBurner, &VSPrinter::EndPage, frmPreView, vspBurner_EndPage);
    TRAPPED_CONNECT(vspBurner, &VSPrinter::EndDocument, frmPreView, vspBurner_EndDoc);
    TRAPPED_CONNECT(preview, &PreviewPane::AfterUserZoom, frmPreView, vspBurner_AfterUserZoom);
    TRAPPED_CONNECT(preview, &PreviewPane::AfterUserPage, frmPreView, vspBurner_AfterUserPage);
}

QString frmPreView::footerText() const {
    return QStringLiteral("Printed by: ") + m_userName + QStringLiteral("|Version ") +
           QString::number(App::Major()) + u'.' + QString::number(App::Minor()) + u'.' +
           QString::number(App::Revision()) + QStringLiteral("|Page %d of ");
}

void frmPreView::Form_Load() {
    setWindowTitle(QStringLiteral("Print Preview"));
    m_userName = clsNetUserName().NetworkUserName();
    vspBurner->DocName = QStringLiteral("Tessaly FileList");
    vspBurner->Header = QStringLiteral("|File List|");
    vspBurner->Footer = footerText();
    SmartToolbar->Item(QStringLiteral("VIEW"))->setText(viewNames().at(PreviewPane::WholePage));
    preview->setZoomMode(PreviewPane::WholePage);
    SmartToolbar->Item(QStringLiteral("ZOOM"))->setEnabled(false);
    // The first run finds the number of pages the foot names; the second is the one shown.
    DoDocument();
    DoDocument();
}

void frmPreView::drawPageLayout() {
    mdblLeft = vspBurner->MarginLeft() / VSPrinter::TwipsPerMm;
    mdblTop = vspBurner->MarginTop() / VSPrinter::TwipsPerMm;
    mdblRight = vspBurner->MarginRight() / VSPrinter::TwipsPerMm;
    vspBurner->DrawPicture(PictureList::pixmap(QStringLiteral("MEDIA"), 128).toImage(), mdblLeft,
                           mdblTop, 16, 16);
    vspBurner->PenWidth = 0.1;
    const double right = vspBurner->PageWidth() / VSPrinter::TwipsPerMm - mdblRight;
    vspBurner->DrawLine(mdblLeft, mdblTop + 29.6, right, mdblTop + 29.6);
    vspBurner->DrawLine(mdblLeft, mdblTop + 30, right, mdblTop + 30);
    vspBurner->FontName = QStringLiteral("Tahoma");
    vspBurner->FontBold = true;
    vspBurner->FontSize = 8;
    auto head = [this](double x, double width, const QString &text) {
        vspBurner->CurrentX = mdblLeft + x;
        vspBurner->CurrentY = mdblTop + 25;
        vspBurner->TextWidth = width;
        vspBurner->setText(text);
    };
    head(1, 14, QStringLiteral("No:"));
    if (m_listing.isData) {
        head(15, 115, QStringLiteral("File Name:"));
        head(130, 0, QStringLiteral("File Size:"));
    } else {
        head(15, 105, QStringLiteral("File Name:"));
        head(120, 20, QStringLiteral("Track:"));
        head(140, 0, QStringLiteral("Time:"));
    }
    vspBurner->FontName = QStringLiteral("Tahoma");
    vspBurner->FontBold = false;
    vspBurner->FontSize = 8;
}

bool frmPreView::DoDocument() {
    if (m_composing || vspBurner->composing())
        return false;
    m_composing = true;
    vspBurner->setPageLayout(PrinterDialogService::printer().pageLayout());
    if (CompilationWindow *compilation = CompilationWindow::current())
        m_listing = compilation->listing();
    mdblLeft = vspBurner->MarginLeft() / VSPrinter::TwipsPerMm;
    mdblTop = vspBurner->MarginTop() / VSPrinter::TwipsPerMm;
    mdblRight = vspBurner->MarginRight() / VSPrinter::TwipsPerMm;
    SmartToolbar->Item(QStringLiteral("LH"))
        ->setText(QStringLiteral(" L:") + Format(mdblLeft, QStringLiteral("#0.0")) +
                  QStringLiteral(" T:") + Format(mdblTop, QStringLiteral("#0.0")));

    vspBurner->StartDoc();
    drawPageLayout();
    int line = 1;
    auto put = [this, &line](double x, double width, const QString &text) {
        vspBurner->CurrentX = mdblLeft + x;
        vspBurner->CurrentY = mdblTop + FirstLine + LinePitch * line;
        vspBurner->TextWidth = width;
        vspBurner->setText(text);
    };
    auto turnPage = [this, &line] {
        vspBurner->NewPage();
        drawPageLayout();
        line = 1;
    };
    if (m_listing.isData) {
        for (qsizetype node = 0; node < m_listing.folders.size(); ++node) {
            const CompilationListing::Folder &folder = m_listing.folders.at(node);
            vspBurner->FontEmphasis = true;
            put(1, 128, folder.fullPath);
            vspBurner->FontEmphasis = false;
            put(130, 0, node == 0 ? QStringLiteral("Root") : QStringLiteral("Directory"));
            // A folder line takes its line without looking for the page's end.
            line += 1;
            for (const CompilationListing::File &file : folder.files) {
                put(1, 14, QString::number(lngFilecounter) + u'.');
                put(15, 114, file.name);
                put(130, 0, file.size);
                lngFilecounter += 1;
                line += 1;
                if (line > LinesPerPage)
                    turnPage();
            }
        }
    } else {
        for (qsizetype index = 1; index <= m_listing.tracks.size(); ++index) {
            const CompilationListing::Track &track = m_listing.tracks.at(index - 1);
            put(1, 14, QString::number(index) + u'.');
            put(15, 104, track.fileName);
            put(120, 19, track.track);
            put(140, 0, track.time);
            line += 1;
            if (line == LinesPerPage + 1)
                turnPage();
        }
    }
    vspBurner->EndDoc();
    // The foot names the total of this composition, whatever the first run found.
    vspBurner->Footer = footerText() + QString::number(vspBurner->PageCount());
    m_composing = false;
    UpdateScroller();
    if (m_closeAfterComposing)
        close();
    return true;
}

void frmPreView::PrintDocument() {
    if (m_composing)
        return;
    if (vspBurner->PageCount() >= 1)
        PrinterDialogService::PrintDoc(*vspBurner, this);
    close();
}

void frmPreView::smartToolbar_Click(KeyedItem *Item) {
    const QString key = Item->Key();
    if (m_composing)
        return;
    if (key == u"EXIT") {
        close();
    } else if (key == u"PRINT") {
        PrintDocument();
    } else if (key == u"PRINTERSETTINGS" || key == u"PAGESETUP") {
        const auto kind =
            key == u"PAGESETUP" ? PrinterDialogService::PageBox : PrinterDialogService::PrinterBox;
        PrinterDialogService::PrinterDialog(kind, this);
        DoDocument();
    } else if (key == u"PREVIOUS") {
        SmartToolbar->Item(QStringLiteral("NEXT"))->setEnabled(true);
        if (preview->PreviewPage() == 1) {
            Item->setEnabled(false);
        } else {
            preview->setPreviewPage(preview->PreviewPage() - 1);
            scrlPage->setValue(preview->PreviewPage());
        }
    } else if (key == u"NEXT") {
        SmartToolbar->Item(QStringLiteral("PREVIOUS"))->setEnabled(true);
        if (preview->PreviewPage() >= vspBurner->PageCount()) {
            Item->setEnabled(false);
        } else {
            preview->setPreviewPage(preview->PreviewPage() + 1);
            scrlPage->setValue(preview->PreviewPage());
        }
    } else if (key == u"VISAMARGINAL") {
        preview->setShowMargins(Item->Checked());
    }
}

void frmPreView::SmartToolbar_Change(KeyedItem *Item, const QString &PropertyName) {
    Q_UNUSED(PropertyName);
    KeyedItem *zoom = SmartToolbar->Item(QStringLiteral("ZOOM"));
    if (Item->Key() == u"ZOOM") {
        // Outside the Percentage view the box shows the fitted zoom again.
        if (preview->ZoomMode() == PreviewPane::Percentage)
            preview->setZoom(Val(Item->Text()));
        vspBurner_AfterUserZoom();
    } else if (Item->Key() == u"VIEW") {
        const int mode = int(viewNames().indexOf(Item->Text()));
        preview->setZoomMode(mode);
        zoom->setEnabled(mode == PreviewPane::Percentage);
        scrlPage_Change();
    }
}

void frmPreView::scrlPage_Change() {
    const int shown = preview->PagesShown();
    scrlPage->setSingleStep(shown);
    scrlPage->setPageStep(shown);
    preview->setPreviewPage(scrlPage->value());
    const int page = preview->PreviewPage();
    SmartToolbar->Item(QStringLiteral("PREVIOUS"))->setEnabled(page > 1);
    SmartToolbar->Item(QStringLiteral("NEXT"))
        ->setEnabled(page + shown - 1 < vspBurner->PageCount());
}

void frmPreView::UpdateScroller() {
    scrlPage->setMaximum(std::max(1, vspBurner->PageCount()));
    scrlPage->setValue(preview->PreviewPage());
    scrlPage_Change();
    preview->refresh();
}

void frmPreView::vspBurner_EndPage() {
    UpdateScroller();
    // The preview fills while the rest is composed; the guard keeps clicks out meanwhile.
    QCoreApplication::processEvents();
}

void frmPreView::vspBurner_AfterUserZoom() {
    SmartToolbar->Item(QStringLiteral("ZOOM"))->setText(QString::number(qRound(preview->Zoom())));
}

void frmPreView::vspBurner_AfterUserPage(int NewPage) {
    vp_MousePage(NewPage);
}

void frmPreView::vp_MousePage(int NewPage) {
    if (NewPage > 0)
        scrlPage->setValue(NewPage);
}

void frmPreView::vspBurner_EndDoc() {
    UpdateScroller();
}

void frmPreView::closeEvent(QCloseEvent *event) {
    // Gone in the middle of a composition would pull the document from under it.
    if (m_composing) {
        m_closeAfterComposing = true;
        event->ignore();
        return;
    }
    DefaultInstance<frmPreView>::release(this);
    event->accept();
}
