// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// How the shipped English reads: one row for each text of the file.
#include "environment/DataRoot.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/TestMain.h"

#include <QtTest>

using namespace language;

namespace
{

// A text of this many words, or of more than one sentence, is a sentence; a shorter one is a label.
constexpr int SentenceWords = 5;

// Sentences that are shorter.
constexpr const char *ShortSentences[] = {"New firmware is available.", "Ready to update.",
                                          "Stop the recording first.", "The update is complete."};
// Labels that are longer: the prompt of a field, the heading of a card, choices and names.
constexpr const char *LongLabels[] = {"Press up to three keys, ticked ones included",
                                      "You have no permission to use %1",
                                      "Repeat until any key is pressed",
                                      "Repeat until the button is pressed again",
                                      "Repeat while the button is held",
                                      "DPI of the current stage",
                                      "Color of DPI stage %1",
                                      "Pairing failed – try again",
                                      "At most %1 s left"};

template <std::size_t N> bool listed(const char *const (&list)[N], const QString &text)
{
    return std::any_of(std::begin(list), std::end(list),
                       [&text](const char *each) { return text == QString::fromUtf8(each); });
}

bool isSentence(const QString &text)
{
    static const QRegularExpression blanks("\\s+");
    static const QRegularExpression nextSentence("[.?]\\s");
    const bool isLong = text.split(blanks).size() >= SentenceWords || text.contains(nextSentence);
    return listed(ShortSentences, text) || (isLong && !listed(LongLabels, text));
}

// British spellings and the other names of what the texts call "offline", "receiver" and "report rate".
constexpr const char *OtherWords =
    "\\b(off[- ]line|on[- ]line|dongle|polling|minimis\\w*|colour\\w*|favourite\\w*|centre\\w*|grey|"
    "recognis\\w*|customis\\w*|synchronis\\w*|behaviour\\w*|licence|e-mail)\\b";

} // namespace

class tst_EnglishTexts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setApplicationFolder(PRODUCT_FOLDER); }

    void endsWithAStopWhereItIsASentence_data() { eachText(); }
    void endsWithAStopWhereItIsASentence()
    {
        QFETCH(QString, text);
        const bool stops = text.endsWith('.') && !text.endsWith("..");
        const bool asks = text.endsWith('?');
        QCOMPARE(stops || asks, asks || isSentence(text));
    }

    void usesOneWordForAThing_data() { eachText(); }
    void usesOneWordForAThing()
    {
        QFETCH(QString, text);
        const QRegularExpression other(OtherWords, QRegularExpression::CaseInsensitiveOption);
        QCOMPARE(other.match(text).captured(), QString());
    }

    // The keys have captions of the devices' own, such as "8000Hz"; a percent sign follows its number.
    void separatesUnits_data() { eachText(); }
    void separatesUnits()
    {
        QFETCH(QString, text);
        static const QRegularExpression joined("\\d(Hz|kHz|ms|mm|s|min|minutes?|seconds?|DPI)\\b");
        QCOMPARE(joined.match(text).captured(), QString());
    }

    void startsWithACapital_data() { eachText(); }
    void startsWithACapital()
    {
        QFETCH(QString, text);
        QVERIFY2(!text.at(0).isLower(), qPrintable(text));
        QCOMPARE(text.contains("  ") || text.startsWith(' '), false);
        QVERIFY2(!text.contains('\''), qPrintable(text)); // the apostrophe is ’
    }

    // An exception that no text is goes with its text.
    void theExceptionsExist()
    {
        const QStringList all = texts().values();
        for (const char *sentence : ShortSentences)
            QVERIFY2(all.contains(sentence), sentence);
        for (const char *label : LongLabels)
            QVERIFY2(all.contains(QString::fromUtf8(label)), label);
    }

private:
    static QMap<QString, QString> texts()
    {
        const LanguageFile english = readLanguageFile(applicationFolder() + "/Language/en.json");
        QMap<QString, QString> found;
        const auto take = [&found](const QString &place, const Texts &table) {
            for (auto text = table.begin(); text != table.end(); ++text)
                found.insert(place + ' ' + text.key(), text.value());
        };
        for (const Word word : {Word::Keyboard, Word::Mouse})
            for (std::size_t i = 0; i < Sections.size(); ++i)
                take(QStringLiteral("%1 %2").arg(int(word)).arg(Sections[i].name),
                     english.section(word, Section(i)));
        for (std::size_t i = 0; i < Choices.size(); ++i)
            take(Choices[i].name, english.choices[i]);
        return found;
    }
    static void eachText()
    {
        QTest::addColumn<QString>("text");
        const QMap<QString, QString> all = texts();
        QVERIFY(all.size() > 200);
        for (auto text = all.begin(); text != all.end(); ++text)
            QTest::newRow(qPrintable(text.key())) << text.value();
    }
};

TEST_CLASS(tst_EnglishTexts, testmain::CoreApplication)
#include "tst_englishtexts.moc"
