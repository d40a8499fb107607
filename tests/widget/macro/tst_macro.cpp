// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The page of the macros: the names that it gives the mouse buttons.
#include "macro/Macro.h"

#include "keys/KeyVocabulary.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

class tst_Macro : public QObject
{
    Q_OBJECT

private:
    const std::array<int, 5> bits = {1, 2, 4, 8, 16};

    void namesAre(const QStringList &names)
    {
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(MouseNameFromBit(bits[std::size_t(i)]), names[i]);
            QCOMPARE(KeyNameToCodeText(names[i]).value(1), QString("4"));
        }
    }

private slots:
    void mouseButtonsAreNamelessBeforeALanguage()
    {
        const Macro page;
        for (const int bit : bits)
            QCOMPARE(MouseNameFromBit(bit), QString());
    }

    void mouseButtonsAreNamelessWithoutALanguage()
    {
        const Macro page;
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(MouseNameFromBit(1), QString("Left button"));
        {
            const fixture::OtherLanguage none("no language");
            emit PostMsg::instance()->SigAllLanguage(0);
            for (const int bit : bits)
                QCOMPARE(MouseNameFromBit(bit), QString());
        }
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(MouseNameFromBit(1), QString("Left button"));
    }

    // A name that the language lacks has a default.
    void mouseButtonsFollowTheLanguage()
    {
        const Macro page;
        const QStringList english = {"Left button", "Right button", "Middle button", "Back button",
                                     "Forward button"};
        emit PostMsg::instance()->SigAllLanguage(0);
        namesAre(english);
        const fixture::OtherLanguage other(R"({"mouse": {"macro": {"InsertEventOptions":
            [{"command": 2, "option": "Linke Taste"}]}}})");
        emit PostMsg::instance()->SigAllLanguage(0);
        namesAre({"Linke Taste", "右键", "中键", "后退键", "前进键"});
        QCOMPARE(KeyNameFromCodeText("0x08", 4), QString("后退键")); // a macro's file holds the code
    }
};

TEST_CLASS(tst_Macro, fixture::ShippedLooks)

#include "tst_macro.moc"
