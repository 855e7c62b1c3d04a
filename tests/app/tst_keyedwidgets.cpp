// The keyed menu, toolbar and status bar, and the animation control.
#include "ErrorOf.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "WidgetSnapshot.h"
#include "base/App.h"
#include "base/RuntimeError.h"
#include "widgets/AnimationControl.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/PictureList.h"

#include <QtTest>
#include <QtWidgets>

#include <functional>

class tst_KeyedWidgets : public QObject {
    Q_OBJECT
private slots:
    void unknownKeysRaiseAndClicksNeedUsableItems() {
        QMenuBar bar;
        QToolBar tools;
        QStatusBar status;
        KeyedMenu menu(&bar);
        KeyedToolbar toolbar(&tools);
        KeyedStatusBar panels(&status);
        menu.addMenu("FILE", "&File");
        menu.addItem("FILE", "NEW", "&New");
        toolbar.addItem("NEW", "New");
        panels.addPanel("DATA");
        const std::function<void()> lookups[] = {
            [&] { menu.Item("OPEN"); }, [&] { menu.Menu("NEW"); }, [&] { toolbar.Item("OPEN"); },
            [&] { panels.Item("FILES"); }};
        for (const auto &lookup : lookups)
            QCOMPARE(errorOf(lookup), 5);
        // Clicks reach the program only from usable items.
        QStringList clicks;
        connect(&menu, &KeyedMenu::Click, this,
                [&](KeyedItem *i) { clicks << "menu " + i->Key(); });
        connect(&toolbar, &KeyedToolbar::Click, this,
                [&](KeyedItem *i) { clicks << "bar " + i->Key(); });
        menu.click("NEW");
        toolbar.click("NEW");
        menu.Item("NEW")->setEnabled(false);
        toolbar.Item("NEW")->setEnabled(false);
        menu.click("NEW");
        toolbar.click("NEW");
        menu.Item("NEW")->setEnabled(true);
        toolbar.Item("NEW")->setEnabled(true);
        menu.Item("NEW")->setShown(0);
        menu.setEnabled(true);
        toolbar.setEnabled(false);
        menu.click("NEW");
        toolbar.click("NEW");
        QCOMPARE(clicks, QStringList({"menu NEW", "bar NEW"}));
    }

    void checkMarkIsTheProgramsToSet() {
        QMenuBar bar;
        KeyedMenu menu(&bar);
        menu.addMenu("VIEW", "&View");
        KeyedItem *item = menu.addItem("VIEW", "VIEWTOOLBAR", "View &Toolbar");
        item->setChecked(true);
        bool seen = false;
        connect(&menu, &KeyedMenu::Click, this, [&](KeyedItem *i) { seen = i->Checked(); });
        menu.click("VIEWTOOLBAR");
        // The handler sees the state as it was, not the toolkit's own toggle.
        QVERIFY(seen);
        QVERIFY(item->Checked());
        QVERIFY(item->action()->isChecked());
    }

    void itemsComeAndGo() {
        QMenuBar bar;
        KeyedMenu menu(&bar);
        menu.addMenu("WINDOWS", "&Windows");
        menu.addItem("WINDOWS", "TILEV", "Tile");
        menu.addSeparator("WINDOWS");
        menu.addItem("WINDOWS", "MDICHILD_1", "File Browser [1]")->Tag =
            QVariant::fromValue(quintptr(42));
        QCOMPARE(menu.itemKeys("WINDOWS"), QStringList({"TILEV", "MDICHILD_1"}));
        menu.removeItem("MDICHILD_1");
        QVERIFY(!menu.contains("MDICHILD_1"));
        menu.removeItem("MDICHILD_1"); // gone already: nothing happens
        // A menu and an item may share a key.
        menu.addMenu("HELP", "&Help");
        KeyedItem *help = menu.addItem("HELP", "HELP", "&Help...");
        menu.addItem("HELP", "ABOUT", "&About");
        QCOMPARE(menu.Item("HELP"), help);
        QCOMPARE(menu.itemKeys("HELP"), QStringList({"HELP", "ABOUT"}));
        QCOMPARE(WidgetSnapshot::differences(&bar, "keyedwidgets-menus"), QString());
    }
};

QTEST_MAIN(tst_KeyedWidgets)
#include "tst_keyedwidgets.moc"
