#pragma once

#include <QLatin1String>

// Gives a new control its name where it is made, so a window builds each control in one line:
//   cmdClose = named(new QPushButton(tr("&Close"), this), "cmdClose");
template<typename Widget> Widget *named(Widget *widget, const char *name) {
    widget->setObjectName(QLatin1String(name));
    return widget;
}
