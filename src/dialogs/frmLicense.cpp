#include "frmLicense.h"
#include "base/App.h"
#include "widgets/DefaultInstance.h"

#include <QFile>
#include <QFontDatabase>
#include <QTextBrowser>

frmLicense::frmLicense(const WindowContext &context)
    : SupportDialog(context, "frmLicense", QStringLiteral("License Agreement")) {
    txtLicense = new QTextBrowser(this);
    txtLicense->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtLicense->setLineWrapMode(QTextEdit::NoWrap);
    // The licence's lines are at most 80 characters: wide enough for them without wrapping.
    setBody(txtLicense, txtLicense->fontMetrics().horizontalAdvance(QString(82, u'M')) + 60, 560);
}

frmLicense::~frmLicense() {
    DefaultInstance<frmLicense>::release(this);
}

void frmLicense::Form_Load() {
    txtLicense->setPlainText(licenseText());
}

QString frmLicense::licenseText() {
    QFile copying(QStringLiteral(":/dialogs/COPYING"));
    const QString text = copying.open(QIODevice::ReadOnly)
                             ? QString::fromUtf8(copying.readAll())
                             : QStringLiteral("The text of the licence is missing from this copy "
                                              "of Tessaly: see https://www.gnu.org/licenses/.");
    return App::ProductName() + QStringLiteral(" ") + App::versionText() + QStringLiteral("\n") +
           App::LegalCopyright() +
           QStringLiteral(
               "\n\n"
               "This program is free software: you can redistribute it and/or modify it\n"
               "under the terms of the GNU General Public License as published by the Free\n"
               "Software Foundation, either version 3 of the License, or (at your option)\n"
               "any later version.\n\n"
               "This program is distributed in the hope that it will be useful, but WITHOUT\n"
               "ANY WARRANTY; without even the implied warranty of MERCHANTABILITY or\n"
               "FITNESS FOR A PARTICULAR PURPOSE. See the GNU General Public License below\n"
               "for more details.\n\n") +
           QString(78, u'-') + QStringLiteral("\n\n") + text;
}
