// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What is JSON and what is not, and how deep it may go.
#include "presentation/language/JsonTree.h"
#include "tests/support/TestMain.h"

#include <QtTest>

class tst_JsonTree : public QObject
{
    Q_OBJECT

private slots:
    void knowsJson_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<bool>("valid");
        const char *const valid[] = {"{}",
                                     "[]",
                                     " [ ] ",
                                     "{\"a\":1}",
                                     "[1,2]",
                                     "[-0.5e+10,0,1E2,1e-2]",
                                     "[true]",
                                     "[false,null]",
                                     "[\"\"]",
                                     "[[],{}]",
                                     "[\"\\u00e9\\\"\"]",
                                     "7",
                                     "\"x\""};
        const char *const invalid[] = {"",
                                       "{",
                                       "}",
                                       "[1,]",
                                       "[,1]",
                                       "[1 2]",
                                       "{\"a\"}",
                                       "{\"a\":}",
                                       "{a:1}",
                                       "{\"a\":1,}",
                                       "[01]",
                                       "[1.]",
                                       "[.5]",
                                       "[-]",
                                       "[1e]",
                                       "[+1]",
                                       "[tru]",
                                       "[nulls]",
                                       "[\"]",
                                       "[\"\\\"]",
                                       "[\"\\x\"]",
                                       "[\"\\u12\"]",
                                       "[\"\\u+123\"]",
                                       "[\"\\u12g4\"]",
                                       "[]]",
                                       "[] x",
                                       "'a'",
                                       "[1}",
                                       "{\"a\":1]",
                                       "//x\n[]",
                                       "[\"\xff\"]",
                                       "[\"\xe2\x82\"]"};
        for (const char *json : valid)
            QTest::newRow(json) << QByteArray(json) << true;
        for (const char *json : invalid)
            QTest::newRow(json) << QByteArray(json) << false;
    }
    void knowsJson()
    {
        QFETCH(QByteArray, json);
        QFETCH(bool, valid);
        QCOMPARE(parseJson(json, 3).has_value(), valid);
    }

    void boundsTheDepthOfJson()
    {
        QVERIFY(parseJson("[[[1]],[{\"a\":[]}]]", 4).has_value());
        QVERIFY(!parseJson("[[[1]],[{\"a\":[]}]]", 3).has_value());
    }
};

TEST_CLASS(tst_JsonTree, testmain::NoApplication)
#include "tst_jsontree.moc"
