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

    void mouseButtonsFollowTheLanguage()
    {
        const Macro page;
        const QStringList english = {"Left button", "Right button", "Middle button", "Back button",
                                     "Forward button"};
        emit PostMsg::instance()->SigAllLanguage(0);
        namesAre(english);
        {
            const fixture::WithoutTexts bare;
            emit PostMsg::instance()->SigAllLanguage(0);
            namesAre({"左键", "右键", "中键", "后退键", "前进键"});
            QCOMPARE(KeyNameFromCodeText("0x08", 4), QString("后退键")); // a macro's file holds the code
        }
        emit PostMsg::instance()->SigAllLanguage(0);
        namesAre(english);
    }
};

TEST_CLASS(tst_Macro, fixture::ShippedLooks)

#include "tst_macro.moc"
