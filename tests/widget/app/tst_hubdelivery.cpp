// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Who is connected to which signal of the hub, and how. The table names every receiver that a signal is
// for; a receiver takes part as soon as its class has the slot.
#include "app/DialogMain.h"
#include "device/Worker.h"
#include "lighting/InputPic.h"
#include "lighting/LedInfo.h"
#include "lighting/LightModeSet.h"
#include "presentation/Notices.h"
#include "presentation/UpDataParam.h"
#include "service/Match.h"
#include "service/PreVier.h"
#include "service/UpDateRepair.h"
#include "tests/support/ProgramSources.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"
#include "tests/widget/app/Emitter.h"

#include <QRegularExpression>
#include <QSet>

namespace
{

enum Delivery {
    Plain,    // the receiver runs in the emitter's call, main thread only
    Crossing, // default connection, also emitted by other threads
    Blocking, // the emitter stands until the receiver has run
};

struct Receiver {
    const char *className;
    const char *slot;
};

struct DeliveryRow {
    const char *signature;
    Delivery delivery;
    void (*emission)(PostMsg *);
    std::vector<Receiver> receivers;
};

DongleRGB color{};

const std::vector<DeliveryRow> &rows()
{
    static const std::vector<DeliveryRow> table = {
        {"SigUpDataConfigUI(int,int,bool)",
         Blocking,
         [](PostMsg *hub) { emit hub->SigUpDataConfigUI(4, 1, true); },
         {{"Buttoninterface", "SlotUpDataConfigUI(int,int,bool)"}}},
        {"SigUpDataLightUIButton(FlashDataMap)",
         Blocking,
         [](PostMsg *hub) { emit hub->SigUpDataLightUIButton({}); },
         {{"Buttoninterface", "SlotUpDataButtonUIButton(FlashDataMap)"}}},
        {"SigUpDataLightLight(FlashDataMap)",
         Blocking,
         [](PostMsg *hub) { emit hub->SigUpDataLightLight({}); },
         {{"LampLight", "SlotUpDataLightUILight(FlashDataMap)"}}},
        {"SigUpDataLightSensor(FlashDataMap)",
         Blocking,
         [](PostMsg *hub) { emit hub->SigUpDataLightSensor({}); },
         {{"Sensor", "SlotUpDataSenSorUISensor(FlashDataMap)"},
          {"Advanced", "SlotUpDataSenSorUISensor(FlashDataMap)"}}},
        {"SigUpDataDPILed(FlashDataMap)",
         Blocking,
         [](PostMsg *hub) { emit hub->SigUpDataDPILed({}); },
         {{"LampLight", "SlotUpDataDPILed(FlashDataMap)"}}},
        {"SigUpDataDPI(int)",
         Blocking,
         [](PostMsg *hub) { emit hub->SigUpDataDPI(1); },
         {{"Sensor", "SlotUpDataDPI(int)"}}},
        {"SigUpDataReportRate(int)",
         Blocking,
         [](PostMsg *hub) { emit hub->SigUpDataReportRate(1); },
         {{"Sensor", "SlotUpDataReportRate(int)"}}},
        {"SigBattery(bool,int,bool)",
         Blocking,
         [](PostMsg *hub) { emit hub->SigBattery(false, 50, true); },
         {{"Dialog", "SlotBattery(bool,int,bool)"}}},
        {"SigRGBValue(DongleRGB*)",
         Blocking,
         [](PostMsg *hub) { emit hub->SigRGBValue(&color); },
         {{"LampLight", "SlotRGBValue(DongleRGB*)"},
          {"FormSetting", "SlotRGBValue(DongleRGB*)"},
          {"LedInfo", "SlotRGBValue(DongleRGB*)"}}},
        {"SigLongRangeMode(bool)",
         Blocking,
         [](PostMsg *hub) { emit hub->SigLongRangeMode(true); },
         {{"Advanced", "SlotLongRangeMode(bool)"}, {"FormSetting", "SlotLongRangeMode(bool)"}}},
        {"SigForm()",
         Blocking,
         [](PostMsg *hub) { emit hub->SigForm(); },
         {{"LampLight", "SlotForm()"},
          {"FormSetting", "SlotForm()"},
          {"Advanced", "SlotForm()"},
          {"Dialog", "SlotForm()"}}},
        {"SigFormReset()",
         Blocking,
         [](PostMsg *hub) { emit hub->SigFormReset(); },
         {{"Sensor", "SlotFormReset()"},
          {"LampLight", "SlotFormResetLight()"},
          {"Buttoninterface", "SlotFormResetButton()"},
          {"FormSetting", "SlotFormResetForm()"},
          {"Advanced", "SlotFormReset()"},
          {"Dialog", "SlotFormReset()"}}},

        {"SigChangeMainDialog(int)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigChangeMainDialog(7); },
         {{"DialogMain", "SlotChangeMainDialog(int)"}}},
        {"SigUpDataParam(int)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigUpDataParam(0); },
         {{"Dialog", "SlotUpDataParam(int)"}}},
        {"SigIsUsb(bool,bool)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigIsUsb(true, true); },
         {{"Dialog", "SlotIsUsb(bool,bool)"}}},
        {"SigSetver(int)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigSetver(4); },
         {{"FormSetting", "SetVer(int)"}}},
        {"SigLabelTextB(QString,QString)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigLabelTextB({}, {}); },
         {{"FormSetting", "SlotLabelTextB(QString,QString)"}}},
        {"SigCheckUpdate()",
         Crossing,
         [](PostMsg *hub) { emit hub->SigCheckUpdate(); },
         {{"FormSetting", "SlotCheckUpdate()"}}},

        {"SigLabelText(int,QString)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigLabelText(7, {}); },
         {{"FormSetting", "SlotLabelText(int,QString)"}}},

        {"SigProgress(int,int)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigProgress(0, 7); },
         {{"UpDateRepair", "SlotProgress(int,int)"}}},
        {"SigAutoRepair(int)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigAutoRepair(0); },
         {{"UpDateRepair", "SlotAutoRepair(int)"}}},
        {"SigAutoRepairProgress(int)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigAutoRepairProgress(0); },
         {{"UpDateRepair", "SlotAutoRepairProgress(int)"}}},
        {"SigUpDateButton(bool)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigUpDateButton(true); },
         {{"DialogChange", "SlotUpDateButton(bool)"}}},

        {"SigRepairCheckUpdate()", Plain, nullptr, {{"UpDateRepair", "SlotRepairCheckUpdate()"}}},
        {"SigSetNewVer()", Plain, nullptr, {{"FormSetting", "SetVerText()"}}},
        {"SigUpdateFrame(bool)", Plain, nullptr, {{"FormSetting", "SlotUpdateFrame(bool)"}}},
        {"SigUpdateStart()", Plain, nullptr, {{"FormSetting", "on_Start()"}}},
        {"SigContinue(int)", Plain, nullptr, {{"FormSetting", "SlotContinue(int)"}}},
        {"SigButtonCheck()", Plain, nullptr, {{"FormSetting", "SlotButtonCheck()"}}},
        {"SigTimerStop()",
         Crossing,
         [](PostMsg *hub) { emit hub->SigTimerStop(); },
         {{"Match", "SlotStopTimer()"}}},
        {"SigButtonEnable(int)",
         Crossing,
         [](PostMsg *hub) { emit hub->SigButtonEnable(1); },
         {{"Match", "SlotButtonenable(int)"}}},

        {"SigChangeSize(int)", Plain, nullptr, {{"DialogMain", "SlotChangeSize(int)"}}},
        {"SigMouseOffLineo(int)",
         Plain,
         nullptr,
         {{"DialogMain", "SlotMouseOffLine(int)"}, {"Dialog", "SlotMouseOffLine(int)"}}},
        {"SigUpPageLight()", Plain, nullptr, {{"DialogMain", "SlotUpPageLight()"}}},
        {"SigMainPageChange()",
         Plain,
         nullptr,
         {{"Worker", "SlotMainPageChange()"},
          {"Match", "SlotMainPageChange()"},
          {"Buttoninterface", "sendWaitingMacros()"},
          {"UpDateRepair", "SlotMainPageChange()"}}},
        {"SigSecondPageChange()", Plain, nullptr, {{"Dialog", "SlotSecondDialog()"}}},
        {"SigSelectMouseInfo(DeviceAllInfo)",
         Plain,
         nullptr,
         {{"Worker", "SlotSelectMouseInfo(DeviceAllInfo)"},
          {"Dialog", "SlotSelectMouseInfo(DeviceAllInfo)"},
          {"Buttoninterface", "SlotSelectMouseInfo(DeviceAllInfo)"}}},
        {"SigUpDataLightUIA(FlashDataMap)",
         Plain,
         nullptr,
         {{"LampLight", "SlotUpDataLightUIA(FlashDataMap)"}}},
        {"SigUpDataSensorUIB(FlashDataMap)",
         Plain,
         nullptr,
         {{"Sensor", "SlotUpDataSenSorUIB(FlashDataMap)"},
          {"Advanced", "SlotUpDataSenSorUIB(FlashDataMap)"}}},
        {"SigUpDataButtonUIC(FlashDataMap)",
         Plain,
         nullptr,
         {{"Buttoninterface", "SlotUpDataButtonUIB(FlashDataMap)"}}},
        {"SigAddConfig(QString)",
         Plain,
         nullptr,
         {{"DeviceHead", "setProfile(QString)"},
          {"SensorDPI", "followProfile(QString)"},
          {"PreVier", "SlotAddConfig(QString)"}}},
        {"SigAddSensor(int)", Plain, nullptr, {{"PreVier", "SlotAddSensor(int)"}}},
        {"SigAddReport(int)", Plain, nullptr, {{"PreVier", "SlotAddReport(int)"}}},
        {"SigAddLOD(QString)", Plain, nullptr, {{"PreVier", "SlotAddLOD(QString)"}}},
        {"SigDebunce(QString)", Plain, nullptr, {{"PreVier", "SlotDebnunce(QString)"}}},
        {"SigAddVer(int,QString)", Plain, nullptr, {{"PreVier", "SlotAddVer(int,QString)"}}},
        {"SigAddUpdate(int,bool)", Plain, nullptr, {{"PreVier", "SlotAddUpdate(int,bool)"}}},
        {"SigAddMacroButton()", Plain, nullptr, {{"Buttoninterface", "SlotAddMacroButton()"}}},
        {"SigUpDataMacro(QString,int)",
         Plain,
         nullptr,
         {{"Buttoninterface", "SlotUpDataMacro(QString,int)"}}},
        {"SigMacroRename(QString,QString)",
         Plain,
         nullptr,
         {{"Buttoninterface", "SlotMacroRename(QString,QString)"}}},
        {"SigDeleteMacroButton(QString)",
         Plain,
         nullptr,
         {{"Buttoninterface", "SlotDeleteMacroButton(QString)"}}},
        {"SigSetMacroPage()", Plain, nullptr, {{"Macro", "SlotSetMacroPage()"}}},
        {"SigMacroDownLoadData(QString,int)",
         Plain,
         nullptr,
         {{"Macro", "SlotMacroDownLoadData(QString,int)"}}},
        {"SigButtonToMacro(FlashDataMap,int)",
         Plain,
         nullptr,
         {{"Macro", "SlotButtonToMacro(FlashDataMap,int)"}}},
        {"SigStartRecord(int)", Plain, nullptr, {{"Dialog", "SlotStartRecord(int)"}}},
        {"SigHideModel(int)", Plain, nullptr, {{"Sensor", "SlotHideModel(int)"}}},
        {"SigCloseOffOnline()",
         Plain,
         nullptr,
         {{"MouseOffLine", "on_CloseButton_clicked()"}, {"Dialog", "SlotCloseOffOnline()"}}},
        {"SigChangeLanguage(int)", Plain, nullptr, {{"ExeIsRun", "SlotChangeLanguage(int)"}}},
        {"SigAllLanguage(int)",
         Plain,
         nullptr,
         {{"Sensor", "SlotAllLanguage(int)"},          {"Macro", "SlotAllLanguage(int)"},
          {"LampLight", "SlotAllLanguage(int)"},       {"Buttoninterface", "SlotAllLanguage(int)"},
          {"DialogMain", "SlotAllLanguage(int)"},      {"DialogChange", "SlotAllLanguage(int)"},
          {"QuestiondialogB", "SlotAllLanguage(int)"}, {"UpDataParam", "SlotAllLanguage(int)"},
          {"MouseOffLine", "SlotAllLanguage(int)"},    {"ContainReset", "SlotAllLanguage(int)"},
          {"InportFail", "SlotAllLanguage(int)"},      {"Match", "SlotAllLanguage(int)"},
          {"PreVier", "SlotAllLanguage(int)"},         {"FormSetting", "SlotAllLanguage(int)"},
          {"LedInfo", "SlotAllLanguage(int)"},         {"InputPicA", "SlotAllLanguage(int)"},
          {"InputPicB", "SlotAllLanguage(int)"},       {"LightModeSet", "SlotAllLanguage(int)"},
          {"UpDateRepair", "SlotAllLanguage(int)"},    {"Advanced", "SlotAllLanguage(int)"}}},
        {"SigLanguageSameA(int)", Plain, nullptr, {{"DialogChange", "SlotSameLanguageA(int)"}}},
        {"SigLanguageSameB(int)", Plain, nullptr, {{"FormSetting", "SlotLanguageSameB(int)"}}},
        {"SigMouseIndex(int)",
         Plain,
         nullptr,
         {{"Dialog", "SlotMouseIndex(int)"},
          {"Buttoninterface", "SlotMouseIndex(int)"},
          {"PreVier", "SlotMouseIndex(int)"}}},
        {"SigFormB()",
         Plain,
         nullptr,
         {{"LampLight", "SlotFormB()"}, {"FormSetting", "SlotFormB()"}, {"Advanced", "SlotFormB()"}}},
        {"SigEnterKey()", Plain, nullptr, {{"DialogChange", "SlotEnterKey()"}}},
        {"SigtVis(int)", Plain, nullptr, {{"Advanced", "SetPos(int)"}}},
        {"SigLightToFrom(int)", Plain, nullptr, {{"FormSetting", "SlotLightToFrom(int)"}}},
    };
    return table;
}

// Notes which of the given objects a call of another thread is handed to, on which thread, and whether the
// emitter went on without it.
class CallWatch : public QObject
{
public:
    CallWatch(const std::vector<QObject *> &objects, const Emitter &ofCall)
        : watched(objects), emitter(ofCall)
    {
        qApp->installEventFilter(this);
    }

    QSet<QString> reached;
    bool emitterWentOn = false;

    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        if (event->type() != QEvent::MetaCall || !watchedNow(receiver))
            return false;
        reached.insert(QString::fromLatin1(receiver->metaObject()->className()));
        // An emitter that waits sleeps meanwhile. One that doesn't comes back, however long that takes it.
        while (!emitter.returned && !sleeps(emitter.thread))
            std::this_thread::yield();
        emitterWentOn = emitterWentOn || emitter.returned;
        return false;
    }

private:
    bool watchedNow(QObject *receiver) const
    {
        return std::find(watched.begin(), watched.end(), receiver) != watched.end();
    }

    std::vector<QObject *> watched;
    const Emitter &emitter;
};

} // namespace

class tst_HubDelivery : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<DialogMain> window;
    std::unique_ptr<ExeIsRun> running;
    std::unique_ptr<MouseOffLine> offLine;
    std::unique_ptr<QuestiondialogB> duplicates;
    std::unique_ptr<ContainReset> reset;
    std::unique_ptr<InportFail> importFailed;
    std::unique_ptr<UpDataParam> wait;
    std::vector<std::unique_ptr<QDialog>> unopened; // what no page opens
    std::unique_ptr<Match> match;
    std::unique_ptr<PreVier> summary;

    QObject *object(const char *className) const
    {
        for (QObject *each :
             std::initializer_list<QObject *>{window.get(), running.get(), offLine.get(), duplicates.get(),
                                              reset.get(), importFailed.get(), wait.get(), match.get(),
                                              summary.get(), UpDateRepair::instance(), Worker::instance()})
            if (each && qstrcmp(each->metaObject()->className(), className) == 0)
                return each;
        for (const auto &each : unopened)
            if (qstrcmp(each->metaObject()->className(), className) == 0)
                return each.get();
        for (QObject *each : window->findChildren<QObject *>())
            if (qstrcmp(each->metaObject()->className(), className) == 0)
                return each;
        return nullptr;
    }
    // The object of that class, once the class has the slot.
    QObject *receiver(const Receiver &wanted) const
    {
        QObject *const found = object(wanted.className);
        return found && found->metaObject()->indexOfSlot(wanted.slot) >= 0 ? found : nullptr;
    }
    std::vector<QObject *> receivers(const DeliveryRow &row) const
    {
        std::vector<QObject *> found;
        for (const Receiver &each : row.receivers)
            if (QObject *const there = receiver(each))
                found.push_back(there);
        return found;
    }
    static void addRows(Delivery delivery)
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < rows().size(); ++i)
            if (rows()[i].delivery == delivery)
                QTest::newRow(rows()[i].signature) << int(i);
    }

private slots:
    void init()
    {
        fixture::clean();
        FakeHidUsb::instance().addDevice(fixture::device("dev", 6, Receiver8K));
        window = std::make_unique<DialogMain>();
        window->show();
        running = std::make_unique<ExeIsRun>();
        offLine = std::make_unique<MouseOffLine>();
        duplicates = std::make_unique<QuestiondialogB>();
        reset = std::make_unique<ContainReset>();
        importFailed = std::make_unique<InportFail>();
        wait = std::make_unique<UpDataParam>();
        unopened.push_back(std::make_unique<LedInfo>());
        unopened.push_back(std::make_unique<InputPicA>());
        unopened.push_back(std::make_unique<InputPicB>());
        unopened.push_back(std::make_unique<LightModeSet>());
        match = std::make_unique<Match>();
        summary = std::make_unique<PreVier>();
        QTRY_VERIFY(FakeHidUsb::instance().idle());
        QCoreApplication::processEvents();
    }
    void cleanup()
    {
        running.reset();
        offLine.reset();
        duplicates.reset();
        reset.reset();
        importFailed.reset();
        wait.reset();
        unopened.clear();
        match.reset();
        summary.reset();
        window.reset();
    }

    void everyReceiverThatExistsIsConnectedOnce()
    {
        int seen = 0;
        for (const DeliveryRow &row : rows())
            for (const Receiver &each : row.receivers)
                if (QObject *const there = receiver(each)) {
                    const QByteArray name = QByteArray(row.signature) + " to " + each.className;
                    const QByteArray signal = QByteArray("2") + row.signature;
                    const QByteArray slot = QByteArray("1") + each.slot;
                    // Undoing one connection must work, and leave none.
                    QVERIFY2(QObject::disconnect(PostMsg::instance(), signal, there, slot), name);
                    QVERIFY2(!QObject::disconnect(PostMsg::instance(), signal, there, slot), name);
                    ++seen;
                }
        QVERIFY2(seen >= 35, qPrintable(QString::number(seen)));
    }

    void theEmitterWaitsForEveryReceiver_data() { addRows(Blocking); }
    void theEmitterWaitsForEveryReceiver()
    {
        QFETCH(int, index);
        const DeliveryRow &row = rows()[std::size_t(index)];
        const std::vector<QObject *> wanted = receivers(row);
        Emitter emitter(row.emission);
        CallWatch watch(wanted, emitter);
        while (!emitter.returned)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QCOMPARE(watch.reached.size(), int(wanted.size()));
        QVERIFY(!watch.emitterWentOn);
    }

    void theEmitterGoesOnAndTheMainThreadTakesIt_data() { addRows(Crossing); }
    void theEmitterGoesOnAndTheMainThreadTakesIt()
    {
        QFETCH(int, index);
        const DeliveryRow &row = rows()[std::size_t(index)];
        const std::vector<QObject *> wanted = receivers(row);
        Emitter emitter(row.emission);
        CallWatch watch(wanted, emitter);
        QElapsedTimer patience;
        patience.start();
        while (!emitter.returned && patience.elapsed() < 30000)
            std::this_thread::yield(); // with the event loop standing still
        const bool wentOn = emitter.returned;
        QTimer::singleShot(0, [] {
            if (auto *const dialog = qobject_cast<UpDataParam *>(QApplication::activeModalWidget()))
                dialog->close();
        });
        while (!emitter.returned || watch.reached.size() < int(wanted.size()))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QVERIFY(wentOn);
    }

    // By SIGNAL and SLOT. A call behind a connection is none.
    void receiversConnectByName()
    {
        const QRegularExpression byPointer(QStringLiteral("\\bconnect\\([^;]*?&PostMsg::\\w+"));
        const QRegularExpression byName(QStringLiteral("\\bconnect\\([^;]*?SIGNAL\\(Sig"));
        QVERIFY(
            byPointer.match(QStringLiteral("connect(PostMsg::instance(),\n &PostMsg::SigForm")).hasMatch());
        QVERIFY(!byPointer.match(QStringLiteral("connect(a, b); follow(&PostMsg::SigForm)")).hasMatch());
        const QString sources = programSources();
        QCOMPARE(byPointer.match(sources).captured(), QString());
        QVERIFY(sources.count(byName) > 40);
    }

    void onTheMainThreadReceiversRunInTheCall()
    {
        emit PostMsg::instance()->SigSelectMouseInfo(fixture::info("dev", Receiver8K));
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("dev"));
        QCOMPARE(SelectedDevice::cacheName(), QStringLiteral("Device_CID12_MID06.bin"));
        QSignalSpy sleep(PostMsg::instance(), SIGNAL(SigLightToFrom(int)));
        FlashDataMap map{};
        map.StopCloseTime = 30;
        emit PostMsg::instance()->SigUpDataButtonUIC(map);
        QCOMPARE(sleep.count(), 1);
        QCOMPARE(sleep.first().first().toInt(), 300);
        QVERIFY(!ButtonPageLoaded); // the family for imports leaves the loaded flags alone
        SensorPageLoaded = LightPageLoaded = true;
        emit PostMsg::instance()->SigUpDataSensorUIB(map);
        emit PostMsg::instance()->SigUpDataLightUIA(map);
        QVERIFY(SensorPageLoaded && !LightPageLoaded); // which that of the lights clears
    }
};

TEST_CLASS(tst_HubDelivery, fixture::ShippedLooks)

#include "tst_hubdelivery.moc"
