// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "hub/PostMsg.h"
#include "presentation/AccessibleRoles.h"
#include "presentation/NamedWidgets.h"
#include "presentation/Notices.h"
#include "presentation/dialogs/GroupKey.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QAccessible>
#include <QCheckBox>
#include <QMenu>
#include <QToolButton>

namespace
{

const char *const Texts = R"({"mouse":{"common":{"Close":"Shut","Number":"No. %1 of all"},
                                       "key":{"KeyShift":"Up"}}})";

QWidget *named(QWidget *parent, const char *key, const char *name, const char *tip = "")
{
    auto *made = new QWidget(parent);
    made->setProperty("nameKey", key);
    made->setAccessibleName(name);
    made->setToolTip(tip);
    return made;
}

} // namespace

class tst_NamedWidgets : public QObject
{
    Q_OBJECT

private slots:
    void takeTheirNamesFromTheTables()
    {
        const fixture::OtherLanguage other(Texts);
        QWidget root;
        const auto *plain = named(&root, "common Close", "Close");
        const auto *tipped = named(&root, "common Close", "Close", "Close");
        const auto *explained = named(&root, "common Close", "Close", "Ends the program.");
        const auto *numbered = named(&root, "common Number 3", "Third");
        const auto *unknown = named(&root, "common Missing", "Stays", "Stays");
        const auto *nowhere = named(&root, "nowhere Close", "Stays");
        nameWidgets(&root, 0);
        QCOMPARE(plain->accessibleName(), QString("Shut"));
        QCOMPARE(plain->toolTip(), QString());
        QCOMPARE(tipped->accessibleName(), QString("Shut"));
        QCOMPARE(tipped->toolTip(), QString("Shut"));
        QCOMPARE(explained->accessibleName(), QString("Shut"));
        QCOMPARE(explained->toolTip(), QString("Ends the program."));
        QCOMPARE(numbered->accessibleName(), QString("No. 3 of all"));
        QCOMPARE(unknown->accessibleName(), QString("Stays"));
        QCOMPARE(unknown->toolTip(), QString("Stays"));
        QCOMPARE(nowhere->accessibleName(), QString("Stays"));
    }

    void theRootIsNamedAsWell()
    {
        const fixture::OtherLanguage other(Texts);
        const std::unique_ptr<QWidget> alone(named(nullptr, "common Close", "Close"));
        nameWidgets(alone.get(), 0);
        QCOMPARE(alone->accessibleName(), QString("Shut"));
    }

    // A caption's mark for the key that presses the button is no part of its name.
    void aToolButtonIsToldByItsCaption()
    {
        installAccessibleRoles();
        QToolButton button;
        const auto name = [&] {
            return QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Name);
        };
        button.setText("&Save && &close");
        QCOMPARE(name(), QString("Save & close"));
        button.setText("Save &");
        QCOMPARE(name(), QString("Save "));
        button.setAccessibleName("R&D");
        QCOMPARE(name(), QString("R&D"));
    }

    void aToolButtonSaysThatItOpensAMenu()
    {
        installAccessibleRoles();
        QToolButton button;
        const auto opensMenu = [&] {
            return bool(QAccessible::queryAccessibleInterface(&button)->state().hasPopup);
        };
        QVERIFY(!opensMenu());
        QMenu menu;
        button.setMenu(&menu);
        QVERIFY(opensMenu());
    }

    void dialogsNameTheirButtons()
    {
        MakeMacro notice;
        GroupKey keys;
        const auto closeOf = [](const QWidget &dialog) {
            return dialog.findChild<QToolButton *>("CloseButton")->accessibleName();
        };
        QCOMPARE(closeOf(notice), QString("Close"));
        QCOMPARE(closeOf(keys), QString("Close"));
        QCOMPARE(keys.findChild<QCheckBox *>("Shift")->text(), QString("Shift"));
        const fixture::OtherLanguage other(Texts);
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(closeOf(notice), QString("Shut"));
        QCOMPARE(closeOf(keys), QString("Shut"));
        QCOMPARE(keys.findChild<QCheckBox *>("Shift")->text(), QString("Up"));
    }
};

TEST_CLASS(tst_NamedWidgets, fixture::ShippedLooks)
#include "tst_namedwidgets.moc"
