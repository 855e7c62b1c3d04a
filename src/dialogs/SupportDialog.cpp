#include "SupportDialog.h"
#include "diagnostics/ErrorTrap.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

SupportDialog::SupportDialog(const WindowContext &context, const char *name, const QString &title)
    : QDialog(context.frame ? context.frame->frameWidget() : nullptr) {
    setObjectName(QString::fromLatin1(name));
    setAttribute(Qt::WA_DeleteOnClose);
    // Modal over the frame, yet shown without a local loop, so that the caller returns at once.
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(title);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this,
            [this, name] { ErrorTrap::run("cmdOK_Click", name, [this] { close(); }); });
}

void SupportDialog::setBody(QWidget *body, int width, int height) {
    auto *row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(cmdOK);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(body, 1);
    layout->addLayout(row);
    resize(width, height);
}
