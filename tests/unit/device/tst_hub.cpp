// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The hub: its signals, and the blocking delivery of types that no queue could carry.
#include "hub/PostMsg.h"
#include "tests/support/OtherThread.h"
#include "tests/support/TestMain.h"

#include <QMetaMethod>
#include <QSet>
#include <QtTest>
#include <thread>

namespace
{

const char *const Signals[] = {
    "SigChangeMainDialog(int)",
    "SigChangeSize(int)",
    "SigUpDataConfigUI(int,int,bool)",
    "SigUpDataLightUIButton(FlashDataMap)",
    "SigUpDataLightLight(FlashDataMap)",
    "SigUpDataLightSensor(FlashDataMap)",
    "SigUpDataLightUIA(FlashDataMap)",
    "SigUpDataSensorUIB(FlashDataMap)",
    "SigUpDataButtonUIC(FlashDataMap)",
    "SigButtonToMacro(FlashDataMap,int)",
    "SigUpDataDPILed(FlashDataMap)",
    "SigMouseOffLineo(int)",
    "SigMainPageChange()",
    "SigSecondPageChange()",
    "SigSelectMouseInfo(DeviceAllInfo)",
    "SigUpPageLight()",
    "SigAddMacroButton()",
    "SigDeleteMacroButton(QString)",
    "SigMacroDownLoadData(QString,int)",
    "SigUpDataMacro(QString,int)",
    "SigMacroRename(QString,QString)",
    "SigSetMacroPage()",
    "SigStartRecord(int)",
    "SigUpDataDPI(int)",
    "SigUpDataReportRate(int)",
    "SigUpDataParam(int)",
    "SigTimerStop()",
    "SigButtonEnable(int)",
    "SigHideModel(int)",
    "SigLabelText(int,QString)",
    "SigLabelTextB(QString,QString)",
    "SigProgress(int,int)",
    "SigBattery(bool,int,bool)",
    "SigAutoRepair(int)",
    "SigAutoRepairProgress(int)",
    "SigChangeLanguage(int)",
    "SigAllLanguage(int)",
    "SigLanguageSameA(int)",
    "SigLanguageSameB(int)",
    "SigCloseOffOnline()",
    "SigUpDateButton(bool)",
    "SigSetver(int)",
    "SigSetNewVer()",
    "SigCloseUpdate()",
    "SigCloseProgress()",
    "SigRGBValue(DongleRGB*)",
    "SigLongRangeMode(bool)",
    "SigMouseIndex(int)",
    "SigIsUsb(bool,bool)",
    "SigForm()",
    "SigFormB()",
    "SigFormReset()",
    "SigEnterKey()",
    "SigCheckUpdate()",
    "SigRepairCheckUpdate()",
    "SigUpdateStart()",
    "SigContinue(int)",
    "SigUpdateFrame(bool)",
    "SigtVis(int)",
    "SigLightToFrom(int)",
    "SigButtonCheck()",
    "Sig20KOpen(bool)",
    "SigAddSensor(int)",
    "SigAddReport(int)",
    "SigAddLOD(QString)",
    "SigDebunce(QString)",
    "SigAddConfig(QString)",
    "SigAddVer(int,QString)",
    "SigAddUpdate(int,bool)",
};

class Page : public QObject
{
    Q_OBJECT

public:
    Page()
    {
        connect(PostMsg::instance(), SIGNAL(SigUpDataLightSensor(FlashDataMap)), this,
                SLOT(takeRecord(FlashDataMap)), Qt::BlockingQueuedConnection);
        connect(PostMsg::instance(), SIGNAL(SigRGBValue(DongleRGB *)), this, SLOT(takeColor(DongleRGB *)),
                Qt::BlockingQueuedConnection);
    }
    FlashDataMap record{};
    DongleRGB *color = nullptr;
    QThread *thread = nullptr;
    std::atomic<int> taken{0};

public slots:
    void takeRecord(FlashDataMap map)
    {
        record = map;
        thread = QThread::currentThread();
        ++taken;
    }
    void takeColor(DongleRGB *rgb)
    {
        color = rgb;
        ++taken;
    }
};

} // namespace

class tst_hub : public QObject
{
    Q_OBJECT

private slots:
    void isOneObjectUntilCleared()
    {
        PostMsg *const first = PostMsg::instance();
        QCOMPARE(PostMsg::instance(), first);
        QVERIFY(!first->parent());
        PostMsg::clear();
        QVERIFY(PostMsg::instance() != first);
        delete first; // the program never does; a test keeps its memory tidy
    }

    void hasExactlyTheSignals()
    {
        QSet<QByteArray> declared;
        const QMetaObject &meta = PostMsg::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            if (meta.method(i).methodType() == QMetaMethod::Signal)
                declared.insert(meta.method(i).methodSignature());
        QSet<QByteArray> wanted;
        for (const char *signature : Signals)
            wanted.insert(signature);
        QCOMPARE(wanted.size(), 69);
        QCOMPARE(declared, wanted);
    }

    void carriesTypesThatNoQueueCould()
    {
        QCOMPARE(QMetaType::type("FlashDataMap"), int(QMetaType::UnknownType));
        QCOMPARE(QMetaType::type("DeviceAllInfo"), int(QMetaType::UnknownType));
        Page page;
        FlashDataMap sent{};
        sent.ReportRate = 64;
        sent.MacroBlocks[15].Events[69].DelayMs.set(70000);
        DongleRGB rgb{2, {}};
        std::atomic<int> takenAtReturn{0};
        runOnOtherThread([&] {
            emit PostMsg::instance()->SigUpDataLightSensor(sent);
            takenAtReturn = page.taken.load(); // the page had it before the callback went on
            emit PostMsg::instance()->SigRGBValue(&rgb);
        });
        QCOMPARE(takenAtReturn.load(), 1);
        QCOMPARE(page.thread, thread());
        QCOMPARE(memcmp(&page.record, &sent, sizeof sent), 0);
        QCOMPARE(page.color, &rgb);
    }

    void blockingSignalWithoutReceiverReturns()
    {
        std::thread callback([] { emit PostMsg::instance()->SigForm(); });
        callback.join(); // would never come back if the emission waited for this thread
    }

    void connectionToAnUndeclaredSignalFails()
    {
        for (const char *signature : {SIGNAL(SigAddMotion(int)), SIGNAL(SigAddMouseVer(QString)),
                                      SIGNAL(SigAddDongleVer(QString)), SIGNAL(SigAddBatteryVis(bool))}) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("No such signal")));
            QVERIFY(!connect(PostMsg::instance(), signature, this, SLOT(deleteLater())));
        }
    }
};

TEST_CLASS(tst_hub, testmain::CoreApplication)
#include "tst_hub.moc"
