// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A language that is added as a file is offered, and reaches all that is read or heard on every page.
#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "service/FormSetting.h"
#include "tests/support/TestMain.h"
#include "tests/widget/app/MainWindow.h"
#include "tour/EveryNotice.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QRegularExpression>
#include <QTextEdit>

namespace
{

constexpr char Shipped[] = PRODUCT_FOLDER "/Language/en.json";

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Every text of the shipped language between marks.
QByteArray marked()
{
    QString json = QString::fromUtf8(contents(Shipped));
    json.replace(QRegularExpression("(\"(?!value|info|LanguageName)[^\"\\n]+\": \")([^\"\\n]+)\""),
                 "\\1«\\2»\"");
    json.replace("\"LanguageName\": \"English\"", "\"LanguageName\": \"Langue\"");
    return json.toUtf8();
}

// Numbers with their units, names of keys, of products and of files, and the names of modes have no
// translation.
bool needsNone(const QString &text)
{
    static const QRegularExpression plain(
        "^[^A-Za-z]*$|^[\\d.]+ ?(mm|ms|Hz)$|^LED\\d$|^(LP|HP|Corded|English|Langue|Morlen|LOD)$|"
        "^https?:|^/|^ZANVO|^v?[\\d.]+[A-F\\d]*$|^#[0-9A-F]{6}$|^F\\d+$|^\\d+,\\d+,\\d+$");
    return text.isEmpty() || plain.match(text).hasMatch();
}

void collect(QWidget *root, const QString &where, QStringList *constants, int *translated)
{
    const QList<QWidget *> widgets = root->findChildren<QWidget *>() << root;
    for (const QWidget *widget : widgets) {
        if (widget->objectName().startsWith("Scroll") && qobject_cast<const QAbstractButton *>(widget))
            continue; // the toolkit's own, of a row of tabs
        QStringList texts = {widget->toolTip(), widget->accessibleName(), widget->accessibleDescription()};
        if (qobject_cast<const QLabel *>(widget) || qobject_cast<const QAbstractButton *>(widget))
            texts << widget->property("text").toString();
        if (const auto *box = qobject_cast<const QComboBox *>(widget))
            for (int i = 0; i < box->count(); ++i)
                texts << box->itemText(i);
        for (const QString &text : qAsConst(texts)) {
            *translated += text.contains(QChar(0xab));
            if (!text.contains(QChar(0xab)) && !needsNone(text))
                *constants << where + ": " + widget->objectName() + ": " + text;
        }
    }
}

} // namespace

class tst_OtherLanguage : public MainWindow
{
    Q_OBJECT

private:
    const QString product = applicationFolder();
    std::unique_ptr<QTemporaryDir> folder;

    // A language folder of the test's own beside the shipped rest.
    void addFile(const QString &name, const QByteArray &json)
    {
        QFile file(folder->filePath("Language/" + name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(json);
    }
    QComboBox *box(const QWidget *page) const { return page->findChild<QComboBox *>("comboBox"); }

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        for (const QString &name : QDir(product).entryList(QDir::AllEntries | QDir::NoDotAndDotDot))
            if (name != "Language")
                QFile::link(product + '/' + name, folder->filePath(name));
        QDir(folder->path()).mkdir("Language");
        for (const QFileInfo &file : QDir(product + "/Language").entryInfoList(QDir::Files))
            QFile::copy(file.filePath(), folder->filePath("Language/" + file.fileName()));
        setApplicationFolder(folder->path());
    }
    void cleanup()
    {
        window.reset();
        setApplicationFolder(product);
        LanguageIndex = 0;
        LoadLanguageTables();
    }

    void asShippedThereIsOne()
    {
        begin();
        QCOMPARE(box(stack()->widget(0))->count(), 1);
        QCOMPARE(box(dialog()->findChild<FormSetting *>())->count(), 1);
    }

    void aFileIsOfferedAndReachesEveryText()
    {
        addFile("fr.json", marked());
        addFile("half.json", R"({"mouse":{"common":{"Close":"Shut"}}})"); // does not name itself
        begin();
        QComboBox *const tiles = box(stack()->widget(0));
        QCOMPARE(tiles->count(), 2);
        QCOMPARE(tiles->itemText(0), QString("English"));
        QCOMPARE(tiles->itemText(1), QString("Langue"));
        tiles->setCurrentIndex(1);
        emit tiles->activated(1);
        QCOMPARE(int(LanguageIndex), FirstAddedLanguage);
        QCOMPARE(box(dialog()->findChild<FormSetting *>())->currentText(), QString("Langue"));
        QStringList constants;
        int translated = 0;
        collect(window.get(), "window", &constants, &translated);
        for (const NoticeRow &row : everyNotice())
            if (qstrcmp(row.name, "ExeIsRun") != 0) // which has files of its own
                collect(row.make().get(), row.name, &constants, &translated);
        QVERIFY2(constants.isEmpty(), qPrintable('\n' + constants.join('\n')));
        QVERIFY2(translated > 400, qPrintable(QString::number(translated)));
        emit tiles->activated(0);
        QCOMPARE(int(LanguageIndex), 0);
        QCOMPARE(dialog()->findChild<QToolButton *>("MinButton")->toolTip(), QString("Minimize"));
    }

    // The indices follow the names of the files, the choice follows the language.
    void aChosenLanguageStaysWhenOthersComeAndGo()
    {
        addFile("fr.json", R"({"mouse":{"common":{"LanguageName":"Langue","Minimize":"Petit"}}})");
        begin();
        emit box(stack()->widget(0))->activated(1);
        QCOMPARE(storedLanguage(UserStore::instance()), FirstAddedLanguage);
        const auto minimize = [this] { return dialog()->findChild<QToolButton *>("MinButton")->toolTip(); };
        QCOMPARE(minimize(), QString("Petit"));
        window.reset();
        addFile("de.json", R"({"mouse":{"common":{"LanguageName":"Deutsch","Minimize":"Klein"}}})");
        begin();
        QCOMPARE(minimize(), QString("Petit"));
        QCOMPARE(box(stack()->widget(0))->currentText(), QString("Langue"));
        QCOMPARE(storedLanguage(UserStore::instance()), FirstAddedLanguage + 1); // which the notices read
        window.reset();
        QVERIFY(QFile::rename(folder->filePath("Language/fr.json"), folder->filePath("fr.json")));
        begin();
        QCOMPARE(minimize(), QString("Minimize"));
        QCOMPARE(box(stack()->widget(0))->currentText(), QString("English"));
        window.reset();
        QVERIFY(QFile::rename(folder->filePath("fr.json"), folder->filePath("Language/fr.json")));
        begin();
        QCOMPARE(minimize(), QString("Petit"));
        window.reset();
        UserStore::instance().WriteValue("Language", "Language", "0"); // by an older release
        begin();
        QCOMPARE(minimize(), QString("Minimize"));
        QCOMPARE(box(stack()->widget(0))->currentText(), QString("English"));
    }

    // A file of a fixed name keeps the index by which the notice "already running" reads it, and what it
    // lacks is that of the first language.
    void aFileOfAFixedNameKeepsItsIndex()
    {
        addFile("2-German.xml", R"({"mouse":{"common":{"LanguageName":"Deutsch","Minimize":"Klein"}}})");
        begin();
        QComboBox *const tiles = box(stack()->widget(0));
        QCOMPARE(tiles->itemText(1), QString("Deutsch"));
        emit tiles->activated(1);
        QCOMPARE(int(LanguageIndex), 2);
        QVERIFY(language::noticeLanguageFile(2).endsWith("2-German.xml"));
        QCOMPARE(dialog()->findChild<QToolButton *>("MinButton")->toolTip(), QString("Klein"));
        QCOMPARE(dialog()->findChild<QToolButton *>("CloseButton")->toolTip(), QString("Close"));
    }
};

TEST_CLASS(tst_OtherLanguage, fixture::ShippedProduct)

#include "tst_otherlanguage.moc"
