#pragma once

class QKeyEvent;
class QTabWidget;

// Ctrl+Tab in a tool dialog goes to the next tab, from the last back to the first. True when
// the key was that one and has been used.
class TabCycle {
public:
    static bool handle(const QKeyEvent *event, QTabWidget *tabs);
};
