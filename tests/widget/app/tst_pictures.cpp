// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the program shows and what the skin draws, held against each other both ways. The windows are led
// through their states, and the pictures that their style sheets name are noted.
#include "app/Dialog.h"
#include "app/DialogMain.h"
#include "binding/Buttoninterface.h"
#include "lighting/InputPic.h"
#include "lighting/LedInfo.h"
#include "lighting/LightModeSet.h"
#include "presentation/Notices.h"
#include "presentation/QuestionDialog.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/ToolkitDialog.h"
#include "presentation/UpDataParam.h"
#include "presentation/Widgets.h"
#include "presentation/language/LanguageTables.h"
#include "selection/DialogChange.h"
#include "selection/PermissionHint.h"
#include "service/Match.h"
#include "service/UpDateRepair.h"
#include "tests/support/ProgramSources.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QDialogButtonBox>
#include <QStackedWidget>

namespace
{

// Drawn for states that the walk does not reach, and for what the pages do not show yet: page, names.
struct PicturesToCome {
    const char *page;
    const char *names;
};
constexpr PicturesToCome ToCome[] = {
    {"Panel", "CheckBox CheckBoxCheck CheckBoxCheckHover CheckBoxCheckOff CheckBoxHover CheckBoxOff Menu "
              "MenuClicked MenuOff"}, // of the emulator's panel
    {"WarningDialog",
     "CheckBox CheckBoxCheck CheckBoxHover CheckBoxCheckHover Up UpHover UpOff Down DownHover "
     "DownOff"},
};

QStringList warnings;

// All but what the toolkit says of the picture itself, and of a display that is none.
void noteWarning(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg && !text.startsWith("Could not create pixmap from") &&
        !text.startsWith("This plugin does not support"))
        warnings << text;
}

// Each model on line and off line, each link, and one that no catalogue knows.
std::vector<FakeDevice> everyKind()
{
    std::vector<FakeDevice> all;
    for (uint8_t mid = 6; mid <= 9; ++mid) {
        all.push_back(fixture::shipped(mid, Receiver1K, "0x0002", true));
        all.push_back(fixture::shipped(mid, Receiver2K, "0x0003", false));
    }
    all.push_back(fixture::shipped(6, Receiver4K, "0x0004", true));
    all.push_back(fixture::shipped(6, Receiver8K, "0x0005", true));
    all.push_back(fixture::shipped(99, fixture::CableKind, "0x0001", true));
    return all;
}

// "Page/Name.png" of each picture in the style sheets of a window, and in those that wait until they are
// seen.
void note(const QWidget *window, QSet<QString> &seen)
{
    static const QRegularExpression url("url\\([^)]*/Picture/([^)]*)\\)");
    for (const QWidget *widget : window->findChildren<QWidget *>())
        for (const QString &sheet : {widget->styleSheet(), widget->property("waitingStyleSheet").toString()})
            for (auto each = url.globalMatch(sheet); each.hasNext();)
                seen << each.next().captured(1);
}

std::vector<std::unique_ptr<NoticeDialog>> noticeWindows()
{
    std::vector<std::unique_ptr<NoticeDialog>> all;
    all.push_back(std::make_unique<MouseOffLine>());
    all.push_back(std::make_unique<QuestiondialogB>());
    all.push_back(std::make_unique<ContainReset>());
    all.push_back(std::make_unique<QuestionDialog>());
    all.push_back(std::make_unique<UpDataParam>());
    all.push_back(std::make_unique<ExeIsRun>());
    return all;
}

// The pairing in each of its phases.
void walkPairing(QSet<QString> &seen)
{
    Match match;
    match.show();
    note(&match, seen);
    for (const int outcome : {0, 1}) {
        emit PostMsg::instance()->SigButtonEnable(outcome);
        note(&match, seen);
    }
}

// By its name or, for one of a numbered row, by the name that its number is put into.
bool isNamed(const QString &sources, const QString &name)
{
    static const QRegularExpression number("\\d+$");
    return sources.contains('"' + name + ".png\"") ||
           (name.contains(number) && sources.contains('"' + QString(name).replace(number, "%1") + ".png\""));
}

} // namespace

class tst_Pictures : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &fake = FakeHidUsb::instance();
    QSet<QString> shown;

    static QString pictures() { return QString::fromLocal8Bit(PRODUCT_FOLDER) + "/Picture/"; }

    static void walkPages(DialogMain &window, int model, QSet<QString> &seen)
    {
        fixture::select(fixture::info("0x0005/6", Receiver8K, model));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        emit PostMsg::instance()->SigMouseIndex(6 + model);
        emit PostMsg::instance()->SigUpDataButtonUIC(FlashDataMap{});
        emit PostMsg::instance()->SigUpDataSensorUIB(FlashDataMap{});
        auto *pages = window.findChild<QStackedWidget *>("stackedWidgetDialog");
        for (int page = 0; page < pages->count(); ++page) {
            pages->setCurrentIndex(page);
            emit PostMsg::instance()->SigIsUsb(page % 2 == 0, false);
            emit PostMsg::instance()->SigLabelTextB({}, model % 2 ? QString() : QStringLiteral("true"));
            fixture::emitOnOtherThread(
                [page] { emit PostMsg::instance()->SigBattery(true, page * 10, true); });
            QVERIFY(pages->currentWidget()->isVisible());
            note(&window, seen);
        }
        pages->setCurrentWidget(window.findChild<Buttoninterface *>());
        for (const char *opener : {"DPI_12", "DPI_4", "DPI_9", "DPI_7", "DPI_11", "DPI_13"}) {
            window.findChild<QAbstractButton *>("RightKey")->click();
            window.findChild<QAbstractButton *>(opener)->click();
            note(&window, seen);
            window.findChild<QAbstractButton *>("FunctionsBack")->click();
        }
    }

    // Leads a window and the notices through all that changes their pictures.
    void walk(QSet<QString> &seen)
    {
        fake.setRunsWatchAtStart(true);
        DialogMain window;
        window.findChild<DialogChange *>()
            ->findChild<QLabel *>("label")
            ->grab(); // tiles take the prompt's place
        window.show();
        QTRY_VERIFY(fake.idle());
        QTRY_COMPARE(window.findChildren<mytoolButtonEnter *>().size(), int(everyKind().size()));
        note(&window, seen);
        fake.setRunsWatchAtStart(false); // which would lead back to the tiles
        for (int model = 0; model < 4; ++model)
            walkPages(window, model, seen);
        for (const auto &notice : noticeWindows()) {
            notice->show();
            note(notice.get(), seen);
        }
        UpDateRepair *const upgrade = UpDateRepair::instance();
        upgrade->show();
        note(upgrade, seen);
        upgrade->close();
        // What no page opens in this release.
        LedInfo receiver;
        InputPicB screen;
        LightModeSet screenLight;
        for (QDialog *dialog : std::initializer_list<QDialog *>{&receiver, &screen, &screenLight}) {
            dialog->show();
            note(dialog, seen);
        }
        PermissionHint card;
        card.setNodes({"/dev/hidraw-refused"});
        card.show();
        note(&card, seen);
        QDialog toolkits;
        QDialogButtonBox buttons(QDialogButtonBox::Ok, &toolkits);
        styleToolkitDialog(&toolkits);
        note(&toolkits, seen);
        walkPairing(seen);
        QTRY_VERIFY(fake.idle());
    }

private slots:
    void initTestCase()
    {
        fixture::clean();
        fake.setDevices(everyKind());
        walk(shown);
        QVERIFY(shown.size() > 60);
    }

    void everyPictureShownIsDrawnInBothSizes()
    {
        for (const QString &name : qAsConst(shown)) {
            QVERIFY2(QFile::exists(pictures() + name), qPrintable(name));
            QVERIFY2(QFile::exists(pictures() + name.chopped(4) + "@2x.png"), qPrintable(name));
        }
    }

    // Also those of states that the walk does not come to.
    void everyPictureNamedIsDrawn()
    {
        const QString sources = programSources();
        int named = 0;
        for (auto each = QRegularExpression("\"(\\w+\\.png)\"").globalMatch(sources); each.hasNext();
             ++named) {
            const QString name = each.next().captured(1);
            QDirIterator found(pictures(), {name}, QDir::Files, QDirIterator::Subdirectories);
            QVERIFY2(found.hasNext(), qPrintable(name));
        }
        QVERIFY(named >= 10); // the scan still finds them
    }

    void everyPictureDrawnIsShown()
    {
        const QString sources = programSources();
        QStringList idle;
        QDirIterator files(pictures(), {"*.png"}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next().mid(pictures().size());
            const QString page = path.section('/', 0, 0);
            const QString name = path.section('/', 1).chopped(4);
            const bool awaited =
                std::any_of(std::begin(ToCome), std::end(ToCome), [&](const PicturesToCome &row) {
                    return page == row.page && QString(row.names).split(' ').contains(name);
                });
            if (!name.endsWith("@2x") && !shown.contains(path) && !awaited && !isNamed(sources, name))
                idle << path;
        }
        idle.sort();
        QVERIFY2(idle.isEmpty(), qPrintable(idle.join(' ')));
    }

    // A skin without a picture leaves its place empty and everything else as it is.
    void aMissingPictureIsNoError()
    {
        const QTemporaryDir bare;
        QDir(bare.path()).mkpath("Language");
        QFile::copy(QString::fromLocal8Bit(PRODUCT_FOLDER) + "/Language/en.json",
                    bare.filePath("Language/en.json"));
        setApplicationFolder(bare.path());
        warnings.clear();
        const QtMessageHandler before = qInstallMessageHandler(noteWarning);
        QSet<QString> seen;
        walk(seen);
        qInstallMessageHandler(before);
        setApplicationFolder(QString::fromLocal8Bit(PRODUCT_FOLDER));
        QCOMPARE(warnings, QStringList());
        QVERIFY(seen.size() > 60);
        QVERIFY(shown.contains(seen)); // without the sensor header some groups stay hidden
    }
};

TEST_CLASS(tst_Pictures, fixture::ShippedProduct)

#include "tst_pictures.moc"
