#include "frmAbout.h"
#include "app/FormRegistry.h"
#include "app/modDeclarations.h"
#include "app/modIniFunc.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "diagnostics/ErrorTrap.h"
#include "engine/system/EngineVersions.h"
#include "widgets/DefaultInstance.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

// Below this the box would all but vanish, which reads as a window that did not open.
constexpr int LeastOpacity = 20;

} // namespace

frmAbout::frmAbout(const WindowContext &context)
    : QDialog(context.frame ? context.frame->frameWidget() : nullptr) {
    setObjectName(QStringLiteral("frmAbout"));
    setAttribute(Qt::WA_DeleteOnClose);
    // Modal over the frame, yet shown without a local loop, so that the caller returns at once.
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(QStringLiteral("About ") + App::ProductName());

    picIcon = new QLabel(this);
    picIcon->setPixmap(QPixmap(QStringLiteral(":/dialogs/tessaly-96.png")));
    picIcon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    lblTitle = new QLabel(App::ProductName(), this);
    QFont big = lblTitle->font();
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    lblTitle->setFont(big);
    lblVersion = new QLabel(QStringLiteral("Version ") + App::versionText(), this);
    lblCopyright = new QLabel(App::LegalCopyright(), this);
    lblCopyright->setWordWrap(true);
    lblLicense = new QLabel(QStringLiteral("You may share and change it under the GNU General "
                                           "Public License, version 3 or (at your option) any "
                                           "later version. It comes with no warranty."),
                            this);
    lblLicense->setWordWrap(true);

    lvwEngines = new QTreeWidget(this);
    lvwEngines->setHeaderLabels(
        {QStringLiteral("Library"), QStringLiteral("Version"), QStringLiteral("Used for")});
    lvwEngines->setRootIsDecorated(false);
    lvwEngines->setSelectionMode(QAbstractItemView::NoSelection);
    lvwEngines->header()->setStretchLastSection(true);

    cmdLicense = new QPushButton(QStringLiteral("&License..."), this);
    cmdCredits = new QPushButton(QStringLiteral("&Credits..."), this);
    cmdWeb = new QPushButton(QStringLiteral("On the &Web..."), this);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);

    auto *text = new QVBoxLayout;
    text->addWidget(lblTitle);
    text->addWidget(lblVersion);
    text->addSpacing(8);
    text->addWidget(lblCopyright);
    text->addWidget(lblLicense);
    auto *head = new QHBoxLayout;
    head->addWidget(picIcon);
    head->addSpacing(12);
    head->addLayout(text, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(new QLabel(QStringLiteral("Tessaly stands on these libraries:"), this));
    layout->addWidget(lvwEngines, 1);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {cmdLicense, cmdCredits, cmdWeb})
        buttons->addWidget(b);
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    layout->addLayout(buttons);
    resize(580, 400);

    const auto trapped = [this](QPushButton *b, void (frmAbout::*handler)(), const char *name) {
        connect(b, &QPushButton::clicked, this, [this, handler, name] {
            ErrorTrap::run(name, "frmAbout", [&] { (this->*handler)(); });
        });
    };
    trapped(cmdOK, &frmAbout::cmdOK_Click, "cmdOK_Click");
    trapped(cmdLicense, &frmAbout::cmdLicense_Click, "cmdLicense_Click");
    trapped(cmdCredits, &frmAbout::cmdCredits_Click, "cmdCredits_Click");
    trapped(cmdWeb, &frmAbout::cmdWeb_Click, "cmdWeb_Click");
}

frmAbout::~frmAbout() {
    DefaultInstance<frmAbout>::release(this);
}

void frmAbout::Form_Load() {
    applyTransparency(this);
    lvwEngines->clear();
    for (const EngineVersion &engine : engineVersions())
        new QTreeWidgetItem(lvwEngines, {engine.name, engine.version, engine.role});
    lvwEngines->resizeColumnToContents(0);
    lvwEngines->resizeColumnToContents(1);
}

void frmAbout::applyTransparency(QWidget *window) {
    const int percent = CInt(sGetINI(gstrINIFile, QStringLiteral("General"),
                                     QStringLiteral("Transparency Value"), QStringLiteral("100")));
    window->setWindowOpacity(qBound(LeastOpacity, percent, 100) / 100.0);
}

void frmAbout::cmdOK_Click() {
    close();
}

void frmAbout::cmdLicense_Click() {
    FormRegistry::open(QStringLiteral("frmLicense"));
}

void frmAbout::cmdCredits_Click() {
    FormRegistry::open(QStringLiteral("frmCoder"));
}

void frmAbout::cmdWeb_Click() {
    FormRegistry::open(QStringLiteral("frmWeb"));
}
